// Command lines that are not understood, and help.
#include <gtest/gtest.h>

#include "tool/CommandLine.h"

namespace {

// The command line is refused with exactly this message; nothing else is printed.
void expectRefused(std::initializer_list<std::string> words, const std::string& message)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 2) << message;
    EXPECT_EQ(result.out, "") << message;
    EXPECT_EQ(result.err, "trellan-update: " + message + "\nSee trellan-update --help.\n");
}

constexpr const char* toolHelp = R"(Updates the firmware of a target from an archive.
Usage: trellan-update [OPTIONS] [SUBCOMMAND]

Options:
  -h,--help                   Print this help

Subcommands:
  version                     Print the version of the update library
  archive-version             Print the version of the archive
  list                        Print the archive's update files
  describe                    Print the archive description as JSON, missing checksums filled in
  installed                   Print the versions installed on the target
  scan                        Read the target's inventory
  compare                     Print installed and available versions side by side
  update                      Update the target
  reboot-support              Tell whether the device can be rebooted automatically

A LIST holds names separated by commas and/or blanks.

Exit status:
  0  success
  1  the command failed, or errors were reported
  2  wrong usage
  3  the archive or the target's inventory cannot be read
  4  the archive does not support the target
)";

constexpr const char* compareHelp = R"(Print installed and available versions side by side
Usage: trellan-update compare [OPTIONS] ARCHIVE

Positionals:
  ARCHIVE (required)          Folder of the firmware archive

Options:
  -h,--help                   Print this help
  --description NAME          Archive description file in the archive (archive.json)
  --board-types LIST          Only elements of boards of these types
  --serial-numbers LIST       Only elements of boards with these serial numbers
  --element-names LIST        Only elements with these names
  --force                     Carry out standard updates even where they are not required
  --no-progress               Print no progress lines
  -v,--verbose                Print more diagnostics
  --configuration             Work on configuration elements instead of the others
  --disable-custom-elements   Leave custom elements out of the update
  --exclude INDEX             Leave the element with this number out of the update; may be repeated
  --target FILE               Simulated target to work on (sets TRELLAN_TARGET)
  --trace FILE                Where to trace the platform's calls (sets TRELLAN_TRACE)
  --json                      Print a JSON document; the library's own text goes to standard error

A LIST holds names separated by commas and/or blanks.

Exit status:
  0  success
  1  the command failed, or errors were reported
  2  wrong usage
  3  the archive or the target's inventory cannot be read
  4  the archive does not support the target
)";

}  // namespace

TEST(UsageTest, ACommandIsNeeded)
{
    expectRefused({}, "a command is missing");
}

TEST(UsageTest, AnUnknownCommandIsNamed)
{
    expectRefused({"upgrade"}, "'upgrade' is no command");
    expectRefused({"Update", "/a"}, "'Update' is no command");
    expectRefused({""}, "'' is no command");
}

TEST(UsageTest, AnUnknownOptionIsNamed)
{
    expectRefused({"update", "/a", "--forces"}, "unexpected argument '--forces'");
    expectRefused({"update", "--forces=1", "/a"}, "unexpected argument '--forces=1'");
    expectRefused({"version", "-x"}, "unexpected argument '-x'");
    expectRefused({"version", "-v=1"}, "unexpected argument '-v=1'");
    expectRefused({"update", "/1x", "-vx"}, "unexpected argument '-vx'");
    expectRefused({"--version"}, "'--version' is no command");
    expectRefused({"list", "/a", "-v-"}, "unexpected argument '-v-'");
    expectRefused({"list", "/a", "-v-force"}, "unexpected argument '-v-force'");
    expectRefused({"list", "-v-", "/a"}, "unexpected argument '-v-'");
}

TEST(UsageTest, AFlagTakesNoValue)
{
    for (const std::string flag : {"--verbose", "--force", "--no-progress", "--configuration",
                                   "--disable-custom-elements", "--json", "--help"}) {
        for (const char* const value : {"=", "=2", "=true", "=false", "=a=b"}) {
            expectRefused({"compare", "/a", flag + value}, flag + ": no value is expected");
        }
    }
    expectRefused({"--help=x"}, "--help: no value is expected");
    expectRefused({"compare", "/a", "--board-types", "--force=2"},
                  "--board-types: a value is expected, not '--force=2'");
    EXPECT_TRUE(parsed({"list", "--", "--force=2"}).options.archivePath.ends_with("/--force=2"));
}

TEST(UsageTest, OptionsStandAfterTheCommand)
{
    expectRefused({"--force", "update", "/a"}, "unexpected argument '--force'");
}

TEST(UsageTest, AMissingArchiveIsNamed)
{
    for (const char* const command : {"archive-version", "list", "describe", "compare", "update"}) {
        expectRefused({command}, "ARCHIVE is required");
    }
    expectRefused({"update", "--force"}, "ARCHIVE is required");
    expectRefused({"update", "--exclude", "3"}, "ARCHIVE is required");
}

TEST(UsageTest, AnEmptyArchiveIsRefused)
{
    expectRefused({"update", ""}, "ARCHIVE: the path is empty");
}

TEST(UsageTest, TheFirstSuperfluousArgumentIsNamed)
{
    for (const char* const command : {"version", "installed", "scan", "reboot-support"}) {
        expectRefused({command, "/a"}, "unexpected argument '/a'");
    }
    expectRefused({"update", "/a", "/b", "/c"}, "unexpected argument '/b'");
    expectRefused({"list", "/a", "list"}, "unexpected argument 'list'");
    expectRefused({"list", "--", "-a", "-b"}, "unexpected argument '-b'");
    expectRefused({"list", "--", "-ab", "-b"}, "unexpected argument '-b'");
}

TEST(UsageTest, AnIndexIsAnUnsigned32BitDecimal)
{
    for (const std::string text :
         {"-1", "+1", "x", "1x", "0x1", "1.0", " 1", "4294967296", "99999999999999999999", "[1]"}) {
        expectRefused({"update", "/a", "--exclude", text}, "--exclude: '" + text + "' is no index (0 to 4294967295)");
    }
    expectRefused({"update", "/a", "--exclude", ""}, "--exclude: '' is no index (0 to 4294967295)");
    expectRefused({"update", "/a", "--exclude="}, "--exclude: '' is no index (0 to 4294967295)");
}

TEST(UsageTest, AForgottenValueIsNotTakenFromTheNextOption)
{
    expectRefused({"update", "/a", "--board-types", "--force"}, "--board-types: a value is expected, not '--force'");
    expectRefused({"update", "/a", "--target", "-v"}, "--target: a value is expected, not '-v'");
    expectRefused({"update", "/a", "--trace", "--"}, "--trace: a value is expected, not '--'");
    expectRefused({"update", "/a", "--description", "d", "--board-types", "-1"},
                  "--board-types: a value is expected, not '-1'");
    expectRefused({"update", "/a", "--exclude", "--force"}, "--exclude: '--force' is no index (0 to 4294967295)");
}

TEST(UsageTest, AnOptionNeedsItsValue)
{
    expectRefused({"update", "/a", "--description"}, "--description: 1 required NAME missing");
    expectRefused({"update", "/a", "--board-types"}, "--board-types: 1 required LIST missing");
    expectRefused({"update", "/a", "--exclude"}, "--exclude: 1 required INDEX missing");
    expectRefused({"update", "/a", "--target"}, "--target: 1 required FILE missing");
    expectRefused({"update", "/a", "--trace"}, "--trace: 1 required FILE missing");
}

TEST(UsageTest, OnlyExcludeMayBeRepeated)
{
    expectRefused({"update", "/a", "--target", "x", "--target", "y"}, "--target: At Most 1 required but received 2");
}

TEST(UsageTest, TargetAndTraceAreFiles)
{
    expectRefused({"scan", "--target", ""}, "--target: the path is empty");
    expectRefused({"scan", "--trace="}, "--trace: the path is empty");
}

TEST(UsageTest, JsonBelongsToTheCommandsThatHaveADocument)
{
    for (const char* const command : {"version", "reboot-support"}) {
        expectRefused({command, "--json"}, "unexpected argument '--json'");
    }
    for (const char* const command : {"archive-version", "describe", "update"}) {
        expectRefused({command, "/a", "--json"}, "unexpected argument '--json'");
    }
}

TEST(UsageTest, HelpListsTheCommands)
{
    for (const char* const option : {"--help", "-h"}) {
        const RunResult result = ran({option});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, toolHelp);
        EXPECT_EQ(result.err, "");
    }
}

TEST(UsageTest, EachCommandHasHelpEvenWithoutItsArchive)
{
    const RunResult result = ran({"compare", "--help"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, compareHelp);
    for (const std::string command :
         {"version", "archive-version", "list", "describe", "installed", "scan", "update", "reboot-support"}) {
        const RunResult help = ran({command, "--help"});
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_NE(help.out.find("\nUsage: trellan-update " + command + " [OPTIONS]"), std::string::npos) << help.out;
    }
}
