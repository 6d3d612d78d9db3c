// Help, and what the tool says of itself.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <utility>
#include <vector>

#include "tool/CommandLine.h"
#include "tool/arguments/Command.h"

namespace {

constexpr const char* toolHelpText = R"(Usage: trellan-update COMMAND [ARCHIVE] [options]

Updates the firmware of a target from an archive.

Commands:
  version                     Print the version of the update library
  archive-version ARCHIVE     Print the version of the archive
  list ARCHIVE                Print the archive's update files
  describe ARCHIVE            Print the archive description as JSON, missing checksums filled in
  installed                   Print the versions installed on the target
  scan                        Read the target's inventory
  compare ARCHIVE             Print installed and available versions side by side
  update ARCHIVE              Update the target
  reboot-support              Tell whether the device can be rebooted automatically
  check ARCHIVE               Tell what is wrong with the archive
  explain ARCHIVE             Tell why elements get the files that they get, and why others do not fit
  record                      Write the target's inventory as a target file, for a simulated target like it
  coverage ARCHIVE TARGET...  Hold the archive against many targets
  history FILE                Print what a file of events tells of each update
  inspect FILE...             Tell kind, version and checksum of update files by their content
  new ARCHIVE                 Begin an archive for the target: a description with an entry for each element
  help [COMMAND]              Print what the tool does, or a command's options

Options:
  -h, --help                  Print this help
  --version                   Print the tool's version
  --json                      Print a JSON document; the library's own text goes to standard error

Exit status:
  0  success
  1  the command failed, or errors were reported
  2  wrong usage
  3  the archive or the target's inventory cannot be read
  4  the archive does not support the target
  5  the filters select no element; nothing was done
  6  the check found errors, or a plan does not hold; nothing was done
  8  no progress for the time of --stall-timeout; the target was unlocked
 10  with --detailed-exit-status, in place of 0: there is something to update
  129, 130, 143  ended by SIGHUP, SIGINT, SIGTERM; no target stays locked

trellan-update help COMMAND prints a command's options, an example and its exit statuses.
)";

constexpr const char* compareHelpText = R"(Usage: trellan-update compare ARCHIVE [options]

Print installed and available versions side by side.
ARCHIVE is the folder of the firmware archive.

Options:
  --description NAME          Archive description file in the archive (archive.json)
  --board-types LIST          Only elements of boards of these types
  --serial-numbers LIST       Only elements of boards with these serial numbers
  --element-names LIST        Only elements with these names
  --force                     Carry out standard updates even where they are not required
  -v, --verbose               Print more diagnostics
  --configuration             Work on configuration elements instead of the others
  --disable-custom-elements   Leave custom elements out of the update
  --exclude INDEX             Leave the element with this number out of the update; may be repeated
  --no-check                  Check nothing beforehand; do just what the library does
  --target FILE               Simulated target to work on (sets TRELLAN_TARGET)
  --trace FILE                Where to trace the platform's calls (sets TRELLAN_TRACE)
  --detailed-exit-status      End with 10 in place of 0 where there is something to update
  -q, --quiet                 Print nothing on standard output
  --json                      Print a JSON document; the library's own text goes to standard error
  -h, --help                  Print this help

A LIST holds names separated by commas and/or blanks.

Example:
  trellan-update compare archive --board-types KR5120,AI8100

Exit status:
  0  success
  1  the command failed, or errors were reported
  2  wrong usage
  3  the archive or the target's inventory cannot be read
 10  with --detailed-exit-status, in place of 0: there is something to update
)";

// Of all commands, in the order of their characters.
constexpr const char* allOptionRows = R"(  --board-types LIST          Only elements of boards of these types
  --configuration             Work on configuration elements instead of the others
  --description NAME          Archive description file in the archive (archive.json)
  --detailed-exit-status      End with 10 in place of 0 where there is something to update
  --disable-custom-elements   Leave custom elements out of the update
  --element INDEX             Explain this element only; may be repeated
  --element-names LIST        Only elements with these names
  --events FILE               Append a line of JSON to this file for each event of the update
  --exclude INDEX             Leave the element with this number out of the update; may be repeated
  --file NUMBER               Explain who is given this entry of the archive, counted from 0; may be repeated
  --force                     Carry out standard updates even where they are not required
  --html FILE                 Write a page for a browser to this file
  --json                      Print a JSON document; the library's own text goes to standard error
  --no-check                  Check nothing beforehand; do just what the library does
  --no-progress               Print no progress lines
  --output FILE               Write the result to this file, as a whole, in place of standard output
  --plan FILE                 Update only while this plan, written by --dry-run --json, still holds
  --progress WHEN             Print progress always, never, or (auto) as lines where there is no terminal
  --serial-numbers LIST       Only elements of boards with these serial numbers
  --stall-timeout SECONDS     Give the update up when it makes no progress for so long
  --strict                    Count warnings as errors
  --target FILE               Simulated target to work on (sets TRELLAN_TARGET)
  --trace FILE                Where to trace the platform's calls (sets TRELLAN_TRACE)
  --verify                    Scan again after the update, and compare each updated element with its file
  -h, --help                  Print this help
  -n, --dry-run               Tell what would be updated, and update nothing; with --json as a plan
  -q, --quiet                 Print nothing on standard output
  -v, --verbose               Print more diagnostics
)";

void expectPrinted(const std::vector<std::string>& words, const std::string& text)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, text);
    EXPECT_EQ(result.err, "");
}

}  // namespace

TEST(Help, ListsTheCommands)
{
    expectPrinted({"--help"}, toolHelpText);
    expectPrinted({"-h"}, toolHelpText);
    expectPrinted({"help"}, toolHelpText);
}

TEST(Help, OfACommandShowsTheOptionsThatHaveAMeaningForIt)
{
    expectPrinted({"compare", "--help"}, compareHelpText);
    expectPrinted({"-h", "compare"}, compareHelpText);
    expectPrinted({"help", "compare"}, compareHelpText);
}

TEST(Help, TellsWhatEachOptionOfAnyCommandDoes)
{
    std::set<std::string> rows;
    for (const TrellanTool::Command& command : TrellanTool::allCommands()) {
        std::istringstream text(ran({"help", command.name}).out);
        for (std::string line; std::getline(text, line) && line != "Example:";) {
            if (line.starts_with("  -")) {
                rows.insert(line + '\n');
            }
        }
    }
    std::string all;
    for (const std::string& row : rows) {
        all += row;
    }
    EXPECT_EQ(all, allOptionRows);
}

TEST(Help, AnswersWhateverElseIsOnTheCommandLine)
{
    expectPrinted({"compare", "/a", "/b", "--exclude", "x", "--help"}, compareHelpText);
    expectPrinted({"--version", "--help"}, toolHelpText);
}

TEST(Help, AndTheToolsVersionPrintNothingWhereTheyAreToBeQuiet)
{
    expectPrinted({"--help", "-q"}, "");
    expectPrinted({"--quiet", "compare", "-h"}, "");
    expectPrinted({"--version", "-q"}, "");
}

TEST(Help, AndTheToolsVersionAreNoDocumentAndQuietTogether)
{
    for (const std::string asked : {"--help", "--version"}) {
        const RunResult result = ran({asked, "--json", "--quiet"});
        EXPECT_EQ(result.status, 2) << asked;
        EXPECT_EQ(result.out, "") << asked;
        EXPECT_EQ(result.err,
                  "trellan-update: --json does not go with --quiet\ntrellan-update: see trellan-update help\n")
            << asked;
    }
}

TEST(Help, ShowsNoCheckForTheCommandsThatHaveElementsToCheckOrToSelect)
{
    std::set<std::string> commands;
    for (const TrellanTool::Command& command : TrellanTool::allCommands()) {
        if (ran({"help", command.name}).out.find("--no-check") != std::string::npos) {
            commands.insert(command.name);
        }
    }
    EXPECT_EQ(commands,
              (std::set<std::string>{"compare", "coverage", "explain", "installed", "new", "scan", "update"}));
    const RunResult result = ran({"version", "--no-check"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

TEST(Help, OfWhatMayBeEndedBySignalsNamesTheStatus)
{
    for (const std::string command : {"update", "coverage"}) {
        const std::string text = ran({"help", command}).out;
        EXPECT_NE(text.find("\n  129, 130, 143  ended by SIGHUP, SIGINT, SIGTERM; no target stays locked\n"),
                  std::string::npos)
            << text;
    }
}

TEST(Help, EachCommandHasSomeWithAnExampleAndExitStatuses)
{
    for (const std::string command :
         {"version", "archive-version", "list", "describe", "installed", "scan", "compare", "update", "reboot-support",
          "check", "explain", "record", "coverage", "history", "inspect", "new", "help"}) {
        const RunResult result = ran({"help", command});
        EXPECT_EQ(result.status, 0) << command;
        EXPECT_TRUE(result.out.starts_with("Usage: trellan-update " + command + " ")) << result.out;
        EXPECT_NE(result.out.find("\nExample:\n  trellan-update " + command), std::string::npos) << result.out;
        EXPECT_NE(result.out.find("\nExit status:\n  0  success\n"), std::string::npos) << result.out;
    }
}

TEST(Help, OfEachCommandTellsWhatItMeansThatItEndsWith1)
{
    const std::string general = "the command failed, or errors were reported";
    const std::vector<std::pair<std::string, std::string>> meanings = {
        {"version", general},
        {"archive-version", general},
        {"list", general},
        {"describe", general},
        {"installed", general},
        {"scan", general},
        {"compare", general},
        {"update", "something failed or was reported as an error, or --verify has found something else than the file"},
        {"reboot-support", "the device cannot be rebooted automatically"},
        {"check", "errors were found, or with --strict warnings"},
        {"explain", "an element or an entry that was asked for is not there"},
        {"record", "something of the target cannot be read, or the result cannot be written"},
        {"coverage", "something of a target cannot be read, or the page cannot be written"},
        {"history", "the file cannot be read"},
        {"inspect", "a file cannot be read"},
        {"new", "there is a description or no element, an element has no entry, or nothing can be written"},
        {"help", "standard output cannot be written"}};
    for (const auto& [command, meaning] : meanings) {
        const std::string text = ran({"help", command}).out;
        EXPECT_NE(text.find("\n  1  " + meaning + "\n"), std::string::npos) << text;
    }
}

TEST(Help, WithoutArgumentsTheCommandsAndAnExampleGoToStandardError)
{
    const RunResult result = ran({});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, R"(trellan-update: a command is missing; there are
trellan-update:   version                     Print the version of the update library
trellan-update:   archive-version ARCHIVE     Print the version of the archive
trellan-update:   list ARCHIVE                Print the archive's update files
trellan-update:   describe ARCHIVE            Print the archive description as JSON, missing checksums filled in
trellan-update:   installed                   Print the versions installed on the target
trellan-update:   scan                        Read the target's inventory
trellan-update:   compare ARCHIVE             Print installed and available versions side by side
trellan-update:   update ARCHIVE              Update the target
trellan-update:   reboot-support              Tell whether the device can be rebooted automatically
trellan-update:   check ARCHIVE               Tell what is wrong with the archive
trellan-update:   explain ARCHIVE             Tell why elements get the files that they get, and why others do not fit
trellan-update:   record                      Write the target's inventory as a target file, for a simulated target like it
trellan-update:   coverage ARCHIVE TARGET...  Hold the archive against many targets
trellan-update:   history FILE                Print what a file of events tells of each update
trellan-update:   inspect FILE...             Tell kind, version and checksum of update files by their content
trellan-update:   new ARCHIVE                 Begin an archive for the target: a description with an entry for each element
trellan-update:   help [COMMAND]              Print what the tool does, or a command's options
trellan-update: for example: trellan-update compare /path/of/the/archive
trellan-update: see trellan-update help COMMAND for its options
)");
}

TEST(Help, TheToolTellsItsVersion)
{
    expectPrinted({"--version"}, "trellan-update 1.0.0\n");
    expectPrinted({"list", "--version"}, "trellan-update 1.0.0\n");
}
