#include "PoweredDevice.h"

#include <nlohmann/json.hpp>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"

using nlohmann::ordered_json;
namespace fs = std::filesystem;

namespace {

// What is installed in a state, with the checksums of all.
struct State {
    const char* firmware;
    unsigned firmwareChecksum;
    std::string table;  // the file that is replaced
    unsigned tableChecksum;
    std::string made;  // the file that is made anew
    unsigned madeChecksum;
};

const std::array<State, 2> states = {{
    {"123456789", 3421780262, std::string(30000, 'o'), 2767511159, std::string(70000, 'c'), 2194925311},
    {"a", 3904355907, std::string(50000, 'n'), 3264806510, std::string(70000, 'c'), 2194925311},
}};

ordered_json boardKeys(const char* type)
{
    return {{"PRODUCT/BOARD_TYPE", type}, {"PRODUCT/NAME", "Board"}, {"PRODUCT/SERIAL_NUMBER", 1}};
}

std::string targetIn(const State& state)
{
    const ordered_json firmware =
        updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", state.firmwareChecksum}});
    const ordered_json table = fileElement(1, {{"NAME", "Table"}, {"LOCATION", "table"}});
    ordered_json document =
        target({board("HCN", boardKeys("KR5120"), {firmware}, {board("CN", boardKeys("KR7000"), {table})})});
    document["clock"] = "real";
    document["bytesPerSecond"] = 1'000'000'000;
    document["flashDrive"] = "drive";
    return document.dump(2);
}

TestArchive archiveOf(const State& state)
{
    return TestArchive(description(
        {fileEntry("table.bin",
                   {{"boardType", "KR7000"}, {"targetPath", "table"}, {"checksumCrc32", state.tableChecksum}}),
         fileEntry("made.bin", {{"targetPath", "new/folder/made"}, {"checksumCrc32", state.madeChecksum}}),
         fileEntry("firmware.bin", {{"checksumCrc32", state.firmwareChecksum}})}));
}

void fill(TestArchive& archive, const State& state)
{
    archive.addFile("table.bin", state.table);
    archive.addFile("made.bin", state.made);
    archive.addFile("firmware.bin", state.firmware);
}

constexpr const char* absent = "(absent)";

std::string contentOf(const fs::path& file)
{
    return fs::exists(file) ? readText(file) : absent;
}

// Which of the two states `content` is in, and where; "?" when in none.
std::string kindOf(const std::string& content, const std::string& first, const std::string& second)
{
    return content == first ? "first" : content == second ? "second" : "?";
}

std::string describe(const std::string& file, const std::string& content)
{
    return file + " has " + std::to_string(content.size()) + " bytes, of neither state: " + content.substr(0, 40) +
           '\n';
}

}  // namespace

PoweredDevice::PoweredDevice(const fs::path& folder)
    : folder(folder), archives{archiveOf(states[0]), archiveOf(states[1])}
{
    fill(archives[0], states[0]);
    fill(archives[1], states[1]);
    fs::create_directory(folder / "drive");
    writeText(folder / "target.json", targetIn(states[0]));
    writeText(folder / "drive/table", states[0].table);
}

std::string PoweredDevice::update(const std::vector<std::string>& environment)
{
    state = 1 - state;
    const ProcessResult result = runProcess(
        TRELLAN_TOOL, {"update", archives[state].path(), "--target", folder / "target.json"}, "/", environment);
    if (result.status != 0) {
        return result.output + result.errors;
    }
    fs::remove_all(folder / "drive/new");
    return "";
}

std::string PoweredDevice::faultsIn(const fs::path& found, std::map<std::string, unsigned>& kinds)
{
    std::string faults;
    const std::string target = contentOf(found / "target.json");
    const std::string targetKind = kindOf(target, targetIn(states[0]), targetIn(states[1]));
    ++kinds["target file: " + targetKind];
    if (targetKind == "?") {
        faults += describe("target.json", target);
    }

    const std::string table = contentOf(found / "drive/table");
    const std::string place = table == absent ? "drive/table.tmp" : "drive/table";
    const std::string content = contentOf(found / place);
    const std::string tableKind = kindOf(content, states[0].table, states[1].table);
    ++kinds[place + ": " + tableKind];
    if (tableKind == "?") {
        faults += describe(place, content);
    }

    const std::string made = contentOf(found / "drive/new/folder/made");
    ++kinds[std::string("drive/new/folder/made: ") + (made == absent ? "not yet" : "made")];
    if (made != absent && made != states[0].made) {
        faults += describe("drive/new/folder/made", made);
    }
    return faults;
}
