// Help and the tool's version as documents.
#include <gtest/gtest.h>

#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

ordered_json helpDocument(const std::vector<std::string>& words)
{
    const RunResult result = ran(words);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    return conformingDocument(result.out);
}

}  // namespace

TEST(HelpDocument, OfACommandHasWhatItsHelpShows)
{
    const ordered_json document = helpDocument({"help", "history", "--json"});
    const ordered_json expected = {
        {"schemaVersion", 1},
        {"command", "help"},
        {"about", "history"},
        {"usage", "trellan-update history FILE [options]"},
        {"description", "Print what a file of events tells of each update."},
        {"commands", ordered_json::array()},
        {"options",
         {{{"name", "--quiet"},
           {"letter", "q"},
           {"value", nullptr},
           {"description", "Print nothing on standard output"}},
          {{"name", "--json"},
           {"letter", nullptr},
           {"value", nullptr},
           {"description", "Print a JSON document; the library's own text goes to standard error"}},
          {{"name", "--help"}, {"letter", "h"}, {"value", nullptr}, {"description", "Print this help"}}}},
        {"example", "trellan-update history events"},
        {"exitStatuses",
         {{{"status", 0}, {"meaning", "success"}},
          {{"status", 1}, {"meaning", "the file cannot be read"}},
          {{"status", 2}, {"meaning", "wrong usage"}}}}};
    EXPECT_EQ(document, expected);
}

TEST(HelpDocument, NamesTheValuesOfOptionsAndEachStatusOfASignal)
{
    const ordered_json document = helpDocument({"help", "update", "--json"});
    const ordered_json description = {{"name", "--description"},
                                      {"letter", nullptr},
                                      {"value", "NAME"},
                                      {"description", "Archive description file in the archive (archive.json)"}};
    EXPECT_EQ(document.at("options").at(0), description);
    std::vector<int> statuses;
    for (const ordered_json& exit : document.at("exitStatuses")) {
        statuses.push_back(exit.at("status"));
    }
    EXPECT_EQ(statuses, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 8, 10, 129, 130, 143}));
}

TEST(HelpDocument, OfTheToolHasTheCommandsButThoseForPrograms)
{
    const ordered_json document = helpDocument({"help", "--json"});
    EXPECT_EQ(document.at("about"), nullptr);
    EXPECT_EQ(document.at("usage"), "trellan-update COMMAND [ARCHIVE] [options]");
    EXPECT_EQ(document.at("example"), nullptr);
    ASSERT_EQ(document.at("commands").size(), 17U);
    const ordered_json coverage = {{"name", "coverage"},
                                   {"operands", "ARCHIVE TARGET..."},
                                   {"description", "Hold the archive against many targets"}};
    EXPECT_EQ(document.at("commands").at(12), coverage);
    EXPECT_EQ(document.at("commands").at(16).at("name"), "help");
}

TEST(HelpDocument, IsPrintedByTheOptionToo)
{
    EXPECT_EQ(ran({"--help", "--json"}).out, ran({"help", "--json"}).out);
    EXPECT_EQ(ran({"--json", "record", "-h"}).out, ran({"help", "record", "--json"}).out);
}

TEST(HelpDocument, OfTheToolsVersionHasItAlone)
{
    const ordered_json expected = {{"schemaVersion", 1}, {"command", "--version"}, {"version", "1.0.0"}};
    EXPECT_EQ(helpDocument({"--version", "--json"}), expected);
}
