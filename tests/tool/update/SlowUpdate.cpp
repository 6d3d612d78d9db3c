#include "tool/update/SlowUpdate.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <sstream>

#include "support/BuildTree.h"
#include "support/ComesTrue.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;
using nlohmann::json;
using nlohmann::ordered_json;

namespace {

const std::string oldFile(3000, 'o');
const std::string newFile(6000, 'n');

// CRC-32 of what is installed at the end.
constexpr unsigned newFileChecksum = 0x6473F54C;
constexpr unsigned newFirmwareChecksum = 0xD5ECD7C4;

const std::vector<std::string> wordsOfUpdate = {"update", "archive", "--target", "target.json",  "--events",
                                                "events", "--trace", "trace",    "--no-progress"};

// Copies a half at first, says so, and takes its time before the rest.
constexpr const char* slowCopy = R"(#!/bin/sh
name=${1##*/}
folder=${0%/*}/..
head -c 3000 "$1" >"$2"
touch "$folder/copying.$name"
sleep 0.15
while [ -e "$folder/hold.$name" ]; do sleep 0.01; done
exec /bin/cp "$1" "$2"
)";

ordered_json deviceWithFlashDrive()
{
    const auto file = [](unsigned index, const std::string& name) {
        return fileElement(index, {{"ID", 10 + index}, {"NAME", name}, {"LOCATION", "config/" + name}});
    };
    ordered_json document =
        target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Board"}},
                      {file(1, "site.cfg"), file(2, "hosts.cfg"),
                       updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 7}})})});
    document["clock"] = "real";
    document["flashDrive"] = "flash";
    return document;
}

ordered_json fileEntryFor(const std::string& name, unsigned sequence)
{
    return fileEntry(name, {{"targetPath", "config/" + name},
                            {"sequence", sequence},
                            {"version", nullptr},
                            {"checksumCrc32", newFileChecksum}});
}

}  // namespace

SlowUpdate::SlowUpdate()
{
    directory.write("target.json", deviceWithFlashDrive().dump(2));
    directory.write(
        "archive/archive.json",
        description(
            {fileEntryFor("site.cfg", 1),
             fileEntry("firmware.bin", {{"sequence", 2}, {"version", "2.0"}, {"checksumCrc32", newFirmwareChecksum}}),
             fileEntryFor("hosts.cfg", 3)})
            .dump());
    directory.write("archive/firmware.bin", "firmware");
    for (const std::string name : {"site.cfg", "hosts.cfg"}) {
        directory.write("archive/" + name, newFile);
        directory.write("flash/config/" + name, oldFile);
    }
    fs::permissions(directory.write("bin/cp", slowCopy), fs::perms::owner_all);
}

void SlowUpdate::hold(const std::string& name) const
{
    directory.write("hold." + name, "");
}

void SlowUpdate::release(const std::string& name) const
{
    fs::remove(folder() / ("hold." + name));
}

std::vector<std::string> SlowUpdate::environment() const
{
    return {"PATH=" + (folder() / "bin").string() + ":/usr/bin:/bin"};
}

RunningProcess SlowUpdate::start(const std::vector<std::string>& options) const
{
    std::vector<std::string> arguments = wordsOfUpdate;
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunningProcess(TRELLAN_TOOL, arguments, folder(), environment());
}

RunningProcess SlowUpdate::startIn(const std::string& shellLine) const
{
    std::vector<std::string> arguments = {"-c", shellLine, TRELLAN_TOOL};
    arguments.insert(arguments.end(), wordsOfUpdate.begin(), wordsOfUpdate.end());
    return RunningProcess("/bin/sh", arguments, folder(), environment());
}

void SlowUpdate::waitForCopy(const std::string& name) const
{
    EXPECT_TRUE(comesTrue([&] { return fs::exists(folder() / ("copying." + name)); })) << name;
}

void SlowUpdate::waitForAnswer(const RunningProcess& tool) const
{
    EXPECT_TRUE(comesTrue([&] { return tool.errorsSoFar().ends_with('\n'); }));
}

bool SlowUpdate::isNew(const std::string& name) const
{
    const std::string content = readText(folder() / "flash/config" / name);
    EXPECT_TRUE(content == oldFile || content == newFile) << name << ": " << content.size();
    return content == newFile;
}

bool SlowUpdate::firmwareIsNew() const
{
    const json document = json::parse(readText(folder() / "target.json"));
    const json& elements = document["tree"]["items"][0]["items"][0]["items"];
    const unsigned checksum = elements[2]["parameters"]["CHECKSUM_CRC32"];
    EXPECT_TRUE(checksum == 7 || checksum == newFirmwareChecksum) << checksum;
    return checksum == newFirmwareChecksum;
}

bool SlowUpdate::isUnlocked() const
{
    const int file = ::open((folder() / "target.json.lock").c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return true;
    }
    const bool isFree = ::flock(file, LOCK_EX | LOCK_NB) == 0;
    ::close(file);
    return isFree;
}

std::vector<json> SlowUpdate::events() const
{
    std::vector<json> events;
    if (fs::exists(folder() / "events")) {
        std::istringstream lines(readText(folder() / "events"));
        for (std::string line; std::getline(lines, line) && !lines.eof();) {
            events.push_back(json::parse(line));
        }
    }
    return events;
}

std::vector<std::string> SlowUpdate::resultingStates() const
{
    std::vector<std::string> states;
    const std::vector<json> all = events();
    if (!all.empty() && all.back()["event"] == "result") {
        for (const json& element : all.back()["elements"]) {
            states.push_back(element["state"]);
        }
    }
    return states;
}
