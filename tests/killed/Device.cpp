#include "Device.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;
namespace fs = std::filesystem;

namespace {

struct Installed {
    std::string version;
    unsigned checksum;
};

const Installed oldContent = {"1.0", 5};
const Installed newFirmware = {"2.0", 7};
const Installed newFpga = {"3.0", 9};

// As large as several blocks of a drive.
const std::string oldTable(30000, 'o');
const std::string newTable(50000, 'n');
const std::string newFile(70000, 'c');

ordered_json element(unsigned id, const char* name, const Installed& installed)
{
    return updateElement(id, {{"NAME", name}, {"VERSION", installed.version}, {"CHECKSUM_CRC32", installed.checksum}});
}

ordered_json boardKeys(const char* type)
{
    return {{"PRODUCT/BOARD_TYPE", type}, {"PRODUCT/NAME", "Board"}, {"PRODUCT/SERIAL_NUMBER", 1}};
}

// The target file's content with these installed.
std::string targetWith(const Installed& firmware, const Installed& fpga)
{
    const ordered_json table = fileElement(1, {{"NAME", "Table"}, {"LOCATION", "table"}});
    ordered_json document =
        target({board("HCN", boardKeys("KR5120"), {element(1, "UserFirmware", firmware), element(2, "UserFpga", fpga)},
                      {board("CN", boardKeys("KR7000"), {table})})});
    document["clock"] = "real";
    document["bytesPerSecond"] = 1'000'000'000;
    document["flashDrive"] = "drive";
    return document.dump(2);
}

ordered_json driveEntry(const std::string& name, const std::string& boardType, const std::string& targetPath,
                        unsigned checksum)
{
    return fileEntry(name, {{"boardType", boardType}, {"targetPath", targetPath}, {"checksumCrc32", checksum}});
}

std::string updateFile(const Installed& content)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = content.checksum;
    header.version = {static_cast<std::uint8_t>(content.version[0] - '0'), 0, 0};
    return UpdateFiles::binaryFile(header);
}

constexpr const char* absent = "(absent)";

}  // namespace

Device::Device()
    : archive(description({driveEntry("table.bin", "KR7000", "table", 3264806510),
                           driveEntry("file.bin", "KR5120", "new/folder/file", 2194925311),
                           without(fileEntry("firmware.bin", {{"id", 1}}), "checksumCrc32"),
                           without(fileEntry("fpga.bin", {{"id", 2}, {"sequence", 2}}), "checksumCrc32")}))
{
    archive.addFile("table.bin", newTable);
    archive.addFile("file.bin", newFile);
    archive.addFile("firmware.bin", updateFile(newFirmware));
    archive.addFile("fpga.bin", updateFile(newFpga));
    folder.write("target.json", targetWith(oldContent, oldContent));
    folder.write("drive/table", oldTable);
}

std::vector<std::string> Device::arguments() const
{
    return {"update", archive.path(), "--target", folder.path() / "target.json"};
}

std::vector<std::string> Device::environment()
{
    return {"PATH=/usr/bin:/bin", "LD_PRELOAD=" TRELLAN_NO_WAITING};
}

std::string Device::contentOf(const std::string& file) const
{
    const fs::path path = folder.path() / file;
    return fs::exists(path) ? readText(path) : absent;
}

void Device::addDriveFault(const std::string& file, const std::string& before, const std::string& after,
                           std::string& found) const
{
    const std::string content = contentOf(file);
    const bool isWholeElsewhere = content == absent && contentOf(file + ".tmp") == after;
    if (content != before && content != after && !isWholeElsewhere) {
        found += file + " has " + std::to_string(content.size()) + " bytes that are neither old nor new\n";
    }
}

std::string Device::faults() const
{
    std::string found;
    const std::string content = contentOf("target.json");
    if (content != targetWith(oldContent, oldContent) && content != targetWith(newFirmware, oldContent) &&
        content != targetWith(newFirmware, newFpga)) {
        found += "the target file is neither old nor new: " + content + '\n';
    }
    addDriveFault("drive/table", oldTable, newTable, found);
    addDriveFault("drive/new/folder/file", absent, newFile, found);
    return found;
}

std::vector<std::string> Device::files() const
{
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
        names.push_back(entry.path().lexically_relative(folder.path()));
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Device::faultsOfNextUpdate() const
{
    const ProcessResult next = runProcess(TRELLAN_TOOL, arguments(), folder.path(), environment());
    std::string found;
    if (next.status != 0) {
        found += "the next update ended with " + std::to_string(next.status) + ":\n" + next.output + next.errors;
    }
    if (contentOf("target.json") != targetWith(newFirmware, newFpga)) {
        found += "the next update has not updated the elements\n";
    }
    if (contentOf("drive/table") != newTable || contentOf("drive/new/folder/file") != newFile) {
        found += "the next update has not written the drive\n";
    }
    const std::vector<std::string> whole = {"drive",       "drive/new",   "drive/new/folder", "drive/new/folder/file",
                                            "drive/table", "target.json", "target.json.lock"};
    if (const auto there = files(); there != whole) {
        found += "after the next update there are";
        for (const std::string& name : there) {
            found += ' ' + name;
        }
        found += '\n';
    }
    return found;
}
