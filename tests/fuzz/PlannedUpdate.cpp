#include "PlannedUpdate.h"

#include "support/TempDir.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/Sha256.h"

using nlohmann::ordered_json;

const char* const plannedDevice =
    R"({"clock": "virtual", "flashDrive": "drive", "tree": {"id": "ROOT", "items": [{"id": "HCN", "parameters":
        {"PRODUCT/BOARD_TYPE": "KR5120", "PRODUCT/SERIAL_NUMBER": 815}, "items": [{"id": "UPDATE_INFO", "items": [
        {"id": "UPDATE_ELEMENT[1]", "parameters": {"ID": 1, "NAME": "UserFirmware", "VERSION": "1.0", "CHECKSUM_CRC32": 1,
         "CONFIGURATION": 0, "VALID": 1, "ACTIVE": 1}}]}]}]}})";
static constexpr const char* const description =
    R"({"info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"}, "files": [
        {"name": "a.bin", "sequence": 1, "boardType": "KR5120", "id": 1, "version": "2.0", "checksumCrc32": 3904355907}]})";

std::string plannedArchive()
{
    static const TempDir folder;
    [[maybe_unused]] static const auto content = folder.write("a.bin", "a");
    [[maybe_unused]] static const auto text = folder.write("archive.json", description);
    return folder.path().string();
}

ordered_json whatIsFixed(const ordered_json& plan, const ordered_json& truth)
{
    ordered_json members = {plan["archive"]["version"], plan["archive"]["sha256"], plan["phases"]};
    for (const char* option : {"description", "boardTypes", "serialNumbers", "elementNames", "exclude", "force",
                               "configuration", "disableCustomElements"}) {
        members.push_back(plan["options"][option]);
    }
    for (const auto& element : plan["elements"]) {
        for (const auto& [key, value] : truth["elements"][0].items()) {
            members.push_back(key == "disabled" || key == "checksumDiffers" ? ordered_json() : element[key]);
        }
    }
    return members;
}

std::string withDigest(const ordered_json& plan)
{
    TrellanTool::Sha256 sha256;
    TrellanTool::DocumentWriter digested([&](std::string_view text) { sha256.add(text); }, "update");
    std::string whole;
    TrellanTool::DocumentWriter written([&](std::string_view text) { whole += text; }, "update");
    for (const auto& [name, value] : plan.items()) {
        if (name != "schemaVersion" && name != "command" && name != "digest") {
            digested.member(name.c_str(), value);
            written.member(name.c_str(), value);
        }
    }
    digested.end();
    written.member("digest", sha256.digest());
    written.end();
    return whole;
}
