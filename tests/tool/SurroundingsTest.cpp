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
#include "tool/JsonDocument.h"

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

TEST_F(Surroundings, AMachineWithoutAFurtherThreadHasAnUpdateDoNothingAndSaySo)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer wants to be the first that is loaded";
#endif
    TestArchive firmware(description({fileEntry("a.bin", {{"id", 1}, {"version", "2.0"}})}));
    firmware.addFile("a.bin", "firmware");
    const std::string before = target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}},
                                             {updateElement(1, {{"NAME", "UserFpga"}, {"VERSION", "1.0"}})})})
                                   .dump();
    folder.write("target.json", before);
    const ProcessResult result =
        runProcess(TRELLAN_TOOL,
                   {"update", firmware.path(), "--no-check", "--target", "target.json", "--json", "--events", "events"},
                   folder.path(), {"LD_PRELOAD=" TRELLAN_NO_THREADS});
    const std::string reason = "the signals cannot be watched: Resource temporarily unavailable; nothing was done";
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.errors.ends_with("trellan-update: " + reason + "\n")) << result.errors;
    const ordered_json document = conformingDocument(result.output);
    EXPECT_EQ(document["error"], ordered_json({{"status", 1}, {"message", reason}}));
    EXPECT_EQ(document["elements"][0]["state"], "notStarted");
    const std::string events = text("events");
    EXPECT_EQ(json::parse(events.substr(0, events.find('\n')))["event"], "start");
    const json last = json::parse(events.substr(events.rfind('\n', events.size() - 2) + 1));
    EXPECT_EQ(last["result"], "failed");
    EXPECT_EQ(last["elements"][0]["state"], "notStarted");
    EXPECT_EQ(text("target.json"), before);
}

TEST_F(Surroundings, AdviceIsNotGivenWhereItDoesNotHelpAgainstTooManyOpenFiles)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer opens files of its own to look at an exception";
#endif
    SKIP_WITHOUT_MOUNT();
    unsigned told = 0;
    for (unsigned files = 4; files < 16; ++files) {
        const ProcessResult result =
            shell("ulimit -n " + std::to_string(files) + "; exec \"$0\" update \"$1\" --target target.json");
        const auto says = [&](const char* words) { return result.errors.find(words) != std::string::npos; };
        for (const char* const advice : {"make that folder", "make it", "be root", "allow user namespaces"}) {
            EXPECT_FALSE(says(advice)) << files << " files: " << result.errors;
        }
        told += says("flash drive") && says("Too many open files") ? 1 : 0;
    }
    EXPECT_GT(told, 0U);
}

// Down to where the tool's own libraries cannot be loaded any more.
TEST_F(Surroundings, AnAddressSpaceThatIsTooSmallIsToldHoweverSmallItIs)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "a sanitizer takes most of the address space";
#endif
    constexpr unsigned page = 4096;
    const auto version = [this](unsigned pages) {
        return runProcess("/usr/bin/prlimit", {"--as=" + std::to_string(pages * page), TRELLAN_TOOL, "version"},
                          folder.path());
    };
    unsigned tooFew = 0;
    unsigned enough = 64 * 1024;
    while (enough - tooFew > 1) {
        const unsigned middle = (tooFew + enough) / 2;
        (version(middle).status == 0 ? enough : tooFew) = middle;
    }
    ASSERT_EQ(version(64 * 1024).status, 0);
    constexpr int notLoaded = 127;
    unsigned told = 0;
    for (unsigned pages = enough - 1; pages > 4; pages -= 4) {
        const ProcessResult result = version(pages);
        if (result.status == notLoaded) {
            break;
        }
        ASSERT_EQ(result.status, 1) << pages << " pages: " << result.errors;
        ASSERT_EQ(result.errors, "trellan-update: there is not enough memory for this\n") << pages << " pages";
        ++told;
    }
    EXPECT_GT(told, 0U);
}
