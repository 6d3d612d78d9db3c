// Command lines that are not understood, and help.
#include <gtest/gtest.h>

#include <utility>

#include "tool/CommandLine.h"

namespace {

// The command line is refused with exactly this message and the name of this help; nothing else is printed.
void expectRefusedWith(const std::string& help, const std::vector<std::string>& words, const std::string& message)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 2) << message;
    EXPECT_EQ(result.out, "") << message;
    EXPECT_EQ(result.err, "trellan-update: " + message + "\ntrellan-update: see " + help + "\n");
}

// The same, with the help of the command that stands first.
void expectRefused(const std::vector<std::string>& words, const std::string& message)
{
    expectRefusedWith("trellan-update help " + words.front(), words, message);
}

}  // namespace

TEST(Usage, ACommandIsNeeded)
{
    expectRefusedWith("trellan-update help", {"--force"}, "a command is missing");
    expectRefusedWith("trellan-update help", {"--"}, "a command is missing");
}

TEST(Usage, AnUnknownCommandIsNamedWithTheOneThatMayBeMeant)
{
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"upgrade", "; did you mean 'update'?"},
        {"Update", "; did you mean 'update'?"},
        {"comp", "; did you mean 'compare'?"},
        {"vers", "; did you mean 'version'?"},
        {"insatlled", "; did you mean 'installed'?"},
        {"nwe", "; did you mean 'new'?"},
        {"l", ""},
        {"test", ""},
        {"rollback", ""},
        {"", ""},
        {std::string(1000, 'u'), ""},
    };
    for (const auto& [word, question] : cases) {
        for (const std::vector<std::string>& words :
             {std::vector{word}, {word, "/a"}, {"help", word}, {word, "--help"}, {"--force", word}}) {
            expectRefusedWith("trellan-update help", words, "'" + word + "' is no command" + question);
        }
    }
}

TEST(Usage, AnUnknownOptionIsNamedWithTheOneThatMayBeMeant)
{
    expectRefused({"update", "/a", "--forces"}, "'--forces' is no option; did you mean '--force'?");
    expectRefused({"update", "/a", "--forc"}, "'--forc' is no option; did you mean '--force'?");
    expectRefused({"update", "--forces=1", "/a"}, "'--forces=1' is no option; did you mean '--force'?");
    expectRefused({"update", "/a", "--serial"}, "'--serial' is no option; did you mean '--serial-numbers'?");
    expectRefused({"update", "/a", "--dryrun"}, "'--dryrun' is no option; did you mean '--dry-run'?");
    expectRefused({"update", "/a", "-force"}, "'-force' is no option; did you mean '--force'?");
    expectRefused({"list", "/a", "-v-force"}, "'-v-force' is no option; did you mean '--force'?");
    expectRefused({"update", "/a", "--frobnicate"}, "'--frobnicate' is no option");
    expectRefused({"version", "-x"}, "'-x' is no option");
    expectRefused({"version", "-v=1"}, "'-v=1' is no option");
    expectRefused({"update", "/1x", "-vx"}, "'-vx' is no option");
    expectRefused({"list", "-v-", "/a"}, "'-v-' is no option");
    expectRefused({"list", "---", "/a"}, "'---' is no option");
}

TEST(Usage, OnlyAnOptionThatGoesWithTheCommandIsAskedFor)
{
    expectRefused({"update", "/a", "--plna", "p"}, "'--plna' is no option; did you mean '--plan'?");
    expectRefused({"compare", "/a", "--plna", "p"}, "'--plna' is no option");
    expectRefused({"list", "/a", "--board-type", "A"}, "'--board-type' is no option; did you mean '--board-types'?");
    expectRefusedWith("trellan-update help", {"upgrade", "--plna"}, "'--plna' is no option; did you mean '--plan'?");
}

TEST(Usage, TheHelpOfTheCommandIsNamedWhereverTheMistakeStands)
{
    const std::string message = "'--forces' is no option; did you mean '--force'?";
    expectRefusedWith("trellan-update help", {"--forces"}, message);
    expectRefusedWith("trellan-update help update", {"--forces", "update", "/a"}, message);
    expectRefusedWith("trellan-update help update", {"--target", "scan", "update", "--forces"}, message);
    expectRefusedWith("trellan-update help compare", {"--json=1", "compare", "/a"}, "--json: no value is expected");
    expectRefusedWith("trellan-update help compare", {"--exclude", "x", "compare", "/a"},
                      "--exclude: 'x' is no index (0 to 4294967295)");
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
    expectRefused({"describe", "/a", "--json"}, "--json does not go with describe");
    expectRefused({"record", "--json"}, "--json does not go with record");
    expectRefused({"new", "/a", "--json"}, "--json does not go with new");
}
