// Fuzz entry for plans, as they are and, so that what a plan says is looked at too, with the digest that belongs to
// them: nothing is done unless a plan says what the dry run does.
#include <nlohmann/json.hpp>

#include "FuzzedTarget.h"
#include "Fuzzing.h"
#include "ToolRun.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/Sha256.h"

using nlohmann::ordered_json;

namespace {

constexpr const char* const device =
    R"({"clock": "virtual", "flashDrive": "drive", "tree": {"id": "ROOT", "items": [{"id": "HCN", "parameters":
        {"PRODUCT/BOARD_TYPE": "KR5120", "PRODUCT/SERIAL_NUMBER": 815}, "items": [{"id": "UPDATE_INFO", "items": [
        {"id": "UPDATE_ELEMENT[1]", "parameters": {"ID": 1, "NAME": "UserFirmware", "VERSION": "1.0", "CHECKSUM_CRC32": 1,
         "CONFIGURATION": 0, "VALID": 1, "ACTIVE": 1}}]}]}]}})";
constexpr const char* const description =
    R"({"info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"}, "files": [
        {"name": "a.bin", "sequence": 1, "boardType": "KR5120", "id": 1, "version": "2.0", "checksumCrc32": 3904355907}]})";

const TempDir& archive()
{
    static const TempDir folder;
    [[maybe_unused]] static const auto content = folder.write("a.bin", "a");
    [[maybe_unused]] static const auto text = folder.write("archive.json", description);
    return folder;
}

// What a plan fixes, of the members that stand in `truth`.
ordered_json fixed(const ordered_json& plan, const ordered_json& truth)
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

void updateByPlan(const std::string& text)
{
    const FuzzedTarget target(device);
    const std::string planned = archive().path().string();
    const MemoryFile file(reinterpret_cast<const std::uint8_t*>(text.data()), text.size());
    static const ordered_json truth = ordered_json::parse(runTool({"update", planned, "--dry-run", "--json"}).out);
    const ToolRun run = runTool({"update", planned, "--plan", file.path(), "--json"});
    require(run.status == 0 || run.status == 6, "a plan holds, or nothing is done");
    if (run.status == 6) {
        require(readText(target.path()) == device, "nothing is done");
    } else {
        require(fixed(ordered_json::parse(text), truth) == fixed(truth, truth), "a plan that holds says what is");
    }
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = textOf(data, size);
    updateByPlan(text);
    const auto plan = ordered_json::parse(text, nullptr, false);
    if (plan.is_object() && plan.contains("digest")) {
        updateByPlan(withDigest(plan));
    }
    return 0;
}
