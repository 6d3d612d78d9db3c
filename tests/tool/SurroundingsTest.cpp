// What the tool inherits from the process that starts it, and what shares its standard error.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>

#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/PseudoTerminal.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"

using nlohmann::json;
using nlohmann::ordered_json;

namespace {

// A device and an archive with a file for its flash drive.
class Surroundings : public testing::Test {
protected:
    Surroundings()
    {
        ordered_json document = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                                              {fileElement(1, {{"NAME", "Settings"}, {"LOCATION", "settings"}})})});
        document["flashDrive"] = "flash";
        folder.write("target.json", document.dump(2));
        folder.write("flash/settings", "old");
        archive.addFile("settings", std::string(20000, 's'));
    }

    // Runs a shell's `line`, in which "$0" is the tool and "$1" the archive.
    ProcessResult shell(const std::string& line) const
    {
        return runProcess("/bin/sh", {"-c", line, TRELLAN_TOOL, archive.path()}, folder.path());
    }

    // The names in a folder, in order.
    std::set<std::string> names(const char* name) const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path() / name)) {
            names.insert(entry.path().filename());
        }
        return names;
    }

    std::string text(const char* name) const { return readText(folder.path() / name); }

    TempDir folder;
    TestArchive archive{
        description({fileEntry("settings", {{"targetPath", "settings"}, {"checksumCrc32", 341481022}})})};
};

}  // namespace

TEST_F(Surroundings, AParentThatIgnoresTheEndOfItsChildrenDoesNotMakeCopiesFail)
{
    SKIP_WITHOUT_MOUNT();
    const ProcessResult result = shell("exec env --ignore-signal=CHLD \"$0\" update \"$1\" --target target.json");
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    EXPECT_EQ(text("flash/settings"), std::string(20000, 's'));
}

TEST_F(Surroundings, AFileThatMayNotGrowThatLargeIsAFailureAndNoEnd)
{
    SKIP_WITHOUT_MOUNT();
    const std::string before = text("target.json");
    const ProcessResult result = shell("ulimit -f 8; exec \"$0\" update \"$1\" --target target.json --json");
    EXPECT_EQ(result.status, 1) << result.errors;
    const json document = json::parse(result.output);
    EXPECT_EQ(document["elements"][0]["state"], "failed") << result.output;
    EXPECT_EQ(text("flash/settings"), "old");
    EXPECT_EQ(text("target.json"), before);
    EXPECT_EQ(names("flash"), std::set<std::string>{"settings"});
}

TEST_F(Surroundings, ATargetFileThatMayNotGrowThatLargeStaysWhole)
{
    ordered_json document =
        target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                      {updateElement(1, {{"NAME", "UserFpga"}, {"VERSION_HISTORY", std::string(20000, 'v')}})})});
    const std::string before = document.dump(2);
    folder.write("target.json", before);
    TestArchive firmware(description({fileEntry("a.bin", {{"id", 1}, {"version", "2.0"}, {"checksumCrc32", 1}})}));
    firmware.addFile("a.bin", "firmware");
    const ProcessResult result =
        shell("ulimit -f 8; exec \"$0\" update " + std::string(firmware.path()) + " --no-check --target target.json");
    EXPECT_EQ(result.status, 1);
    std::istringstream words(result.output);
    const std::set<std::string> printed{std::istream_iterator<std::string>(words), {}};
    EXPECT_TRUE(printed.contains("0x26300007") && printed.contains("large.")) << result.output;
    EXPECT_EQ(text("target.json"), before);
    EXPECT_EQ(names("."), (std::set<std::string>{"flash", "target.json", "target.json.lock"}));
}

// The library, whose loading is traced too, is loaded before the tool knows what the target is.
TEST_F(Surroundings, ATraceThatTheEnvironmentNamesIsNotWrittenIntoTheTargetFile)
{
    SKIP_WITHOUT_MOUNT();
    const std::string before = text("target.json");
    const ProcessResult result = shell("TRELLAN_TRACE=target.json exec \"$0\" scan --target target.json");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "WARNING: cannot write the trace target.json: it is the target file\n");
    EXPECT_EQ(text("target.json"), before);
}

TEST_F(Surroundings, ATraceThatTheEnvironmentNamesBeginsWithTheLoadingOfTheLibrary)
{
    EXPECT_EQ(shell("TRELLAN_TRACE=trace exec \"$0\" version").status, 0);
    EXPECT_EQ(text("trace"),
              "{\"call\":\"registerMessages\",\"code\":642777088}\n"
              "{\"call\":\"unregisterMessages\",\"code\":642777088}\n");
}

TEST_F(Surroundings, ATerminalIsShownControlCharactersOfThePlatformToo)
{
    const PseudoTerminal terminal;
    const std::string scan = "exec \"$0\" scan --target '\x1b[2J' --trace '/\x1b[3J/trace'";
    shell(scan + " 2>" + terminal.path());
    EXPECT_EQ(terminal.shown(), "ERROR 0x26300007: The target file " + folder.path().string() +
                                    "/\\x1b[2J cannot be read: No such file or directory.\n"
                                    "WARNING: cannot write the trace /\\x1b[3J/trace: No such file or directory\n");
    EXPECT_EQ(shell(scan).errors, "ERROR 0x26300007: The target file " + folder.path().string() +
                                      "/\x1b[2J cannot be read: No such file or directory.\n"
                                      "WARNING: cannot write the trace /\x1b[3J/trace: No such file or directory\n");
}

TEST_F(Surroundings, ATerminalIsShownWhatThePlatformSaysAtTheEnd)
{
    const PseudoTerminal terminal;
    shell("exec \"$0\" version --trace '/\x1b[3J/trace' 2>" + terminal.path());
    EXPECT_EQ(terminal.shown(), "WARNING: cannot write the trace /\\x1b[3J/trace: No such file or directory\n");
}
