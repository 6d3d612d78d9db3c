// What each command and option means for the library.
#include <gtest/gtest.h>

#include <filesystem>

#include "tool/CommandLine.h"
#include "tool/arguments/Command.h"

using TrellanTool::Arguments;

namespace {

// The working folder with what joins it to a name: nothing where it is the root.
const std::string here = (std::filesystem::current_path() / "").string();

}  // namespace

TEST(Arguments, EachCommandHasItsCodeAndTakesAnArchiveOrNone)
{
    struct {
        const char* name;
        std::uint32_t code;
        bool takesArchive;
    } const cases[] = {
        {"version", 0, false}, {"archive-version", 1, true}, {"list", 2, true},
        {"describe", 3, true}, {"installed", 4, false},      {"scan", 5, false},
        {"compare", 6, true},  {"update", 7, true},          {"reboot-support", 5, false},
    };
    for (const auto& entry : cases) {
        const Arguments arguments = entry.takesArchive ? parsed({entry.name, "/a/b"}) : parsed({entry.name});
        EXPECT_STREQ(arguments.command->name, entry.name);
        EXPECT_EQ(arguments.options.command, entry.code) << entry.name;
        EXPECT_EQ(arguments.options.archivePath, entry.takesArchive ? "/a/b" : "") << entry.name;
    }
}

TEST(Arguments, WithoutOptionsOnlyTheDescriptionFileHasAName)
{
    const Arguments arguments = parsed({"update", "/a"});
    EXPECT_EQ(arguments.options.descriptionFileName, "archive.json");
    EXPECT_EQ(arguments.options.option3, "");
    EXPECT_EQ(arguments.options.boardTypes, "");
    EXPECT_EQ(arguments.options.serialNumbers, "");
    EXPECT_EQ(arguments.options.elementNames, "");
    EXPECT_FALSE(arguments.options.force);
    EXPECT_FALSE(arguments.options.noProgress);
    EXPECT_FALSE(arguments.options.verbose);
    EXPECT_FALSE(arguments.options.configuration);
    EXPECT_FALSE(arguments.options.disableCustomElements);
    EXPECT_FALSE(arguments.options.option12);
    EXPECT_FALSE(arguments.noCheck);
    EXPECT_FALSE(arguments.json);
    EXPECT_FALSE(arguments.help);
    EXPECT_FALSE(arguments.version);
    EXPECT_TRUE(arguments.notes.empty());
    EXPECT_TRUE(arguments.excluded.empty());
    EXPECT_EQ(arguments.targetFile, std::nullopt);
    EXPECT_EQ(arguments.traceFile, std::nullopt);
}

TEST(Arguments, TextOptionsFillTheirFields)
{
    const Arguments arguments = parsed({"compare", "/a", "--description", "other.json", "--board-types", "A, B",
                                        "--serial-numbers", "12 13", "--element-names", "UserFpga"});
    EXPECT_EQ(arguments.options.descriptionFileName, "other.json");
    EXPECT_EQ(arguments.options.boardTypes, "A, B");
    EXPECT_EQ(arguments.options.serialNumbers, "12 13");
    EXPECT_EQ(arguments.options.elementNames, "UserFpga");
}

TEST(Arguments, EachFlagSetsItsFieldAlone)
{
    using ZoNTrellanUpdater::ZoTOptions;
    const std::vector<std::pair<std::string, bool ZoTOptions::*>> flags = {
        {"--force", &ZoTOptions::force},
        {"--no-progress", &ZoTOptions::noProgress},
        {"--verbose", &ZoTOptions::verbose},
        {"-v", &ZoTOptions::verbose},
        {"--configuration", &ZoTOptions::configuration},
        {"--disable-custom-elements", &ZoTOptions::disableCustomElements},
    };
    for (const auto& [name, field] : flags) {
        const ZoTOptions options = parsed({"update", "/a", name}).options;
        EXPECT_TRUE(options.*field) << name;
        EXPECT_EQ(options.force + options.noProgress + options.verbose + options.configuration +
                      options.disableCustomElements + options.option12,
                  1)
            << name;
    }
}

TEST(Arguments, FlagsMayShareADashAndBeRepeated)
{
    const Arguments arguments = parsed({"list", "-vv", "/a", "--verbose", "-hv"});
    EXPECT_TRUE(arguments.help);
    EXPECT_TRUE(parsed({"list", "-vv", "/a", "--verbose"}).options.verbose);
}

TEST(Arguments, OptionsMayStandAnywhereAndTakeTheirValueAfterAnEqualsSign)
{
    const Arguments arguments = parsed({"--no-progress", "--target=/t", "update", "--force", "--board-types=A=B",
                                        "--exclude=3", "/a", "--exclude", "0"});
    EXPECT_TRUE(arguments.options.noProgress);
    EXPECT_TRUE(arguments.options.force);
    EXPECT_EQ(arguments.targetFile, "/t");
    EXPECT_EQ(arguments.options.boardTypes, "A=B");
    EXPECT_EQ(arguments.options.archivePath, "/a");
    EXPECT_EQ(arguments.excluded, (std::vector<std::uint32_t>{3, 0}));
}

TEST(Arguments, EveryCommandTakesEveryOptionAndNotesThoseThatHaveNoMeaningForIt)
{
    const std::vector<std::string> options = {"--description",
                                              "d",
                                              "--board-types",
                                              "b",
                                              "--serial-numbers",
                                              "s",
                                              "--element-names",
                                              "e",
                                              "--force",
                                              "--no-progress",
                                              "-v",
                                              "--configuration",
                                              "--disable-custom-elements",
                                              "--exclude",
                                              "4294967295",
                                              "--no-check",
                                              "--target",
                                              "/t",
                                              "--trace",
                                              "/r"};
    const std::string noFilters = "--board-types --serial-numbers --element-names --force --no-progress ";
    const std::string otherElementOptions = "--configuration --disable-custom-elements --exclude";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"version", "--description " + noFilters + "--verbose " + otherElementOptions + " --target"},
        {"archive-version", noFilters + otherElementOptions + " --target"},
        {"list", noFilters + otherElementOptions + " --target"},
        {"describe", noFilters + otherElementOptions + " --target"},
        {"installed", "--description --force --no-progress"},
        {"scan", "--description --force --no-progress"},
        {"compare", "--no-progress"},
        {"update", ""},
        {"reboot-support", "--description " + noFilters + otherElementOptions},
        {"help", "--description " + noFilters + "--verbose " + otherElementOptions + " --target --trace"},
    };
    for (const auto& [command, meaningless] : cases) {
        std::vector<std::string> words = options;
        words.push_back(command);
        if (std::string(TrellanTool::commandNamed(command).operands) == "ARCHIVE") {
            words.push_back("/a");
        }
        std::string noted;
        for (const std::string& note : parsed(words).notes) {
            const std::string name = note.substr(6, note.find(' ', 6) - 6);
            EXPECT_EQ(note, "note: " + name + " has no meaning for " + command);
            noted += noted.empty() ? name : " " + name;
        }
        EXPECT_EQ(noted, meaningless) << command;
    }
}

TEST(Arguments, AnOptionWithoutAMeaningChangesNothing)
{
    const Arguments arguments = parsed(
        {"version", "--description", "d", "--board-types", "b", "--force", "-v", "--exclude", "1", "--target", "/t"});
    EXPECT_EQ(arguments.options.descriptionFileName, "archive.json");
    EXPECT_EQ(arguments.options.boardTypes, "");
    EXPECT_FALSE(arguments.options.force);
    EXPECT_FALSE(arguments.options.verbose);
    EXPECT_TRUE(arguments.excluded.empty());
    EXPECT_EQ(arguments.targetFile, std::nullopt);
}

TEST(Arguments, AnOptionThatIsRepeatedIsNotedOnce)
{
    EXPECT_EQ(parsed({"version", "--exclude", "1", "--exclude", "2"}).notes,
              std::vector<std::string>{"note: --exclude has no meaning for version"});
}

TEST(Arguments, AnEmptyValueIsAValue)
{
    EXPECT_EQ(parsed({"list", "--description", "", "/a"}).options.descriptionFileName, "");
    const Arguments arguments = parsed({"list", "--description=", "/a"});
    EXPECT_EQ(arguments.options.descriptionFileName, "");
    EXPECT_EQ(arguments.options.archivePath, "/a");
}

TEST(Arguments, AValueBehindAnEqualsSignMayBeginOrEndWithAnything)
{
    const Arguments arguments =
        parsed({"compare", "/a", "--description=--force", "--board-types=-v",
                "--serial-numbers==", "--element-names=A=", "--target=-t", "--trace=--", "--exclude=1"});
    EXPECT_EQ(arguments.options.descriptionFileName, "--force");
    EXPECT_EQ(arguments.options.boardTypes, "-v");
    EXPECT_EQ(arguments.options.serialNumbers, "=");
    EXPECT_EQ(arguments.options.elementNames, "A=");
    EXPECT_EQ(arguments.targetFile, here + "-t");
    EXPECT_EQ(arguments.traceFile, here + "--");
    EXPECT_FALSE(arguments.options.force);
    EXPECT_FALSE(arguments.options.verbose);
}

TEST(Arguments, ValuesAreTakenAsTheyStand)
{
    EXPECT_EQ(parsed({"scan", "--board-types", "[A,B]"}).options.boardTypes, "[A,B]");
    EXPECT_EQ(parsed({"scan", "--board-types", "-"}).options.boardTypes, "-");
    EXPECT_EQ(parsed({"list", "/[a,b]"}).options.archivePath, "/[a,b]");
    EXPECT_EQ(parsed({"list", "/list"}).options.archivePath, "/list");
}

TEST(Arguments, PathsBecomeAbsolute)
{
    const Arguments arguments = parsed({"update", "archive", "--target", "t.json", "--trace=../trace"});
    EXPECT_EQ(arguments.options.archivePath, here + "archive");
    EXPECT_EQ(arguments.targetFile, here + "t.json");
    EXPECT_EQ(arguments.traceFile, here + "../trace");
}

TEST(Arguments, AnArchiveMayHaveTheNameOfACommand)
{
    EXPECT_EQ(parsed({"describe", "list"}).options.archivePath, here + "list");
}

TEST(Arguments, AnArchiveMayBeginWithADashAfterTwoDashes)
{
    const Arguments arguments = parsed({"update", "--force", "--", "--verbose"});
    EXPECT_EQ(arguments.options.archivePath, here + "--verbose");
    EXPECT_TRUE(arguments.options.force);
    EXPECT_FALSE(arguments.options.verbose);
}

TEST(Arguments, JsonIsAFlagOfTheCommandsThatHaveADocument)
{
    EXPECT_TRUE(parsed({"list", "/a", "--json"}).json);
    EXPECT_TRUE(parsed({"installed", "--json"}).json);
    EXPECT_TRUE(parsed({"scan", "--json"}).json);
    EXPECT_TRUE(parsed({"compare", "--json", "/a"}).json);
}
