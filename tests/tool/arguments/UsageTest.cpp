// Command lines that are not understood, and help.
#include <gtest/gtest.h>

#include "tool/CommandLine.h"

namespace {

// The command line is refused with exactly this message; nothing else is printed.
void expectRefused(const std::vector<std::string>& words, const std::string& message)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 2) << message;
    EXPECT_EQ(result.out, "") << message;
    EXPECT_EQ(result.err, "trellan-update: " + message + "\ntrellan-update: see trellan-update help\n");
}

}  // namespace

TEST(Usage, ACommandIsNeeded)
{
    expectRefused({"--force"}, "a command is missing");
    expectRefused({"--"}, "a command is missing");
}

TEST(Usage, AnUnknownCommandIsNamed)
{
    expectRefused({"upgrade"}, "'upgrade' is no command");
    expectRefused({"Update", "/a"}, "'Update' is no command");
    expectRefused({""}, "'' is no command");
    expectRefused({"help", "upgrade"}, "'upgrade' is no command");
    expectRefused({"upgrade", "--help"}, "'upgrade' is no command");
}

TEST(Usage, AnUnknownOptionIsNamed)
{
    expectRefused({"update", "/a", "--forces"}, "'--forces' is no option");
    expectRefused({"update", "/a", "--forc"}, "'--forc' is no option");
    expectRefused({"update", "--forces=1", "/a"}, "'--forces=1' is no option");
    expectRefused({"--forces"}, "'--forces' is no option");
    expectRefused({"version", "-x"}, "'-x' is no option");
    expectRefused({"version", "-v=1"}, "'-v=1' is no option");
    expectRefused({"update", "/1x", "-vx"}, "'-vx' is no option");
    expectRefused({"list", "/a", "-v-force"}, "'-v-force' is no option");
    expectRefused({"list", "-v-", "/a"}, "'-v-' is no option");
}

TEST(Usage, AFlagTakesNoValue)
{
    for (const std::string flag : {"--verbose", "--force", "--no-progress", "--configuration",
                                   "--disable-custom-elements", "--no-check", "--json", "--help", "--version"}) {
        for (const char* const value : {"=", "=2", "=true", "=false", "=a=b"}) {
            expectRefused({"compare", "/a", flag + value}, flag + ": no value is expected");
        }
    }
    EXPECT_TRUE(parsed({"list", "--", "--force=2"}).options.archivePath.ends_with("/--force=2"));
}

TEST(Usage, AMissingArchiveIsNamed)
{
    for (const char* const command : {"archive-version", "list", "describe", "compare", "update"}) {
        expectRefused({command}, "ARCHIVE is required");
    }
    expectRefused({"update", "--force"}, "ARCHIVE is required");
    expectRefused({"update", "--exclude", "3"}, "ARCHIVE is required");
}

TEST(Usage, AnEmptyArchiveIsRefused)
{
    expectRefused({"update", ""}, "ARCHIVE: the path is empty");
}

TEST(Usage, TheFirstSuperfluousArgumentIsNamed)
{
    for (const char* const command : {"version", "installed", "scan", "reboot-support"}) {
        expectRefused({command, "/a"}, "unexpected argument '/a'");
    }
    expectRefused({"update", "/a", "/b", "/c"}, "unexpected argument '/b'");
    expectRefused({"list", "/a", "list"}, "unexpected argument 'list'");
    expectRefused({"list", "--", "-a", "-b"}, "unexpected argument '-b'");
    expectRefused({"list", "--", "-ab", "-b"}, "unexpected argument '-b'");
    expectRefused({"help", "list", "scan"}, "unexpected argument 'scan'");
}

TEST(Usage, AnIndexIsAnUnsigned32BitDecimal)
{
    for (const std::string text : {"+1", "x", "1x", "0x1", "1.0", " 1", "4294967296", "99999999999999999999", "[1]"}) {
        expectRefused({"update", "/a", "--exclude", text}, "--exclude: '" + text + "' is no index (0 to 4294967295)");
    }
    expectRefused({"update", "/a", "--exclude=-1"}, "--exclude: '-1' is no index (0 to 4294967295)");
    expectRefused({"update", "/a", "--exclude", ""}, "--exclude: '' is no index (0 to 4294967295)");
    expectRefused({"update", "/a", "--exclude="}, "--exclude: '' is no index (0 to 4294967295)");
}

TEST(Usage, AForgottenValueIsNotTakenFromTheNextOption)
{
    expectRefused({"update", "/a", "--board-types", "--force"}, "--board-types: a value is expected, not '--force'");
    expectRefused({"update", "/a", "--target", "-v"}, "--target: a value is expected, not '-v'");
    expectRefused({"update", "/a", "--trace", "--"}, "--trace: a value is expected, not '--'");
    expectRefused({"update", "/a", "--description", "d", "--board-types", "-1"},
                  "--board-types: a value is expected, not '-1'");
    expectRefused({"update", "/a", "--exclude", "-1"}, "--exclude: a value is expected, not '-1'");
    expectRefused({"compare", "/a", "--board-types", "--force=2"},
                  "--board-types: a value is expected, not '--force=2'");
}

TEST(Usage, AnOptionNeedsItsValue)
{
    expectRefused({"update", "/a", "--description"}, "--description: a value is expected (NAME)");
    expectRefused({"update", "/a", "--board-types"}, "--board-types: a value is expected (LIST)");
    expectRefused({"update", "/a", "--exclude"}, "--exclude: a value is expected (INDEX)");
    expectRefused({"update", "/a", "--target"}, "--target: a value is expected (FILE)");
    expectRefused({"version", "--trace"}, "--trace: a value is expected (FILE)");
}

TEST(Usage, OnlyExcludeMayBeRepeatedWithAnotherValue)
{
    for (const std::string option :
         {"--description", "--board-types", "--serial-numbers", "--element-names", "--target", "--trace"}) {
        expectRefused({"update", "/a", option, "x", option + "=y"}, option + ": given more than once");
    }
}

TEST(Usage, TargetAndTraceAreFiles)
{
    expectRefused({"scan", "--target", ""}, "--target: the path is empty");
    expectRefused({"scan", "--trace="}, "--trace: the path is empty");
}

TEST(Usage, JsonBelongsToTheCommandsThatHaveADocument)
{
    expectRefused({"help", "--json"}, "--json does not go with help");
    expectRefused({"describe", "/a", "--json"}, "--json does not go with describe");
}
