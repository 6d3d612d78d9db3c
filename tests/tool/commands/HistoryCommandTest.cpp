// The command that shows a file of events.
#include <gtest/gtest.h>

#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::json;

namespace {

constexpr const char* runOfOneElement =
    R"({"time":"2024-05-01T10:00:00.000Z","run":"a","event":"start","archive":{"path":"/fw","version":"2.3"},)"
    R"("target":null,"elements":[{"index":1,"name":"UserFirmware","from":"1.0","to":"2.0"}]})"
    "\n"
    R"({"time":"2024-05-01T10:00:01.000Z","run":"a","event":"phase","phase":0})"
    "\n"
    R"({"time":"2024-05-01T10:00:02.000Z","run":"a","event":"result","status":1,"result":"failed","elements":[)"
    R"({"index":1,"name":"UserFirmware","from":"1.0","to":"2.0","state":"failed",)"
    R"("errors":[{"code":5,"text":"verify"},{"code":null,"text":"ERROR"}]}]})"
    "\n";

class HistoryCommand : public testing::Test {
protected:
    TempDir folder;
};

}  // namespace

TEST_F(HistoryCommand, PrintsALineForEachRun)
{
    const RunResult result = ran({"history", folder.write("events", runOfOneElement).string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "2024-05-01T10:00:00.000Z  /fw (2.3): nothing updated: failed\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(HistoryCommand, HasADocumentThatConformsToTheSchema)
{
    const std::string unfinished =
        R"({"time":"2024-05-02T10:00:00.000Z","run":"b","event":"start","archive":{"path":"/fw","version":"2.3"},)"
        R"("elements":[{"index":1,"name":"UserFirmware","from":"1.0","to":"2.0"}]})"
        "\n";
    const RunResult result = ran({"history", "--json", folder.write("events", runOfOneElement + unfinished).string()});
    EXPECT_EQ(result.status, 0);
    const json document = json::parse(result.out);
    const JsonSchema schema(json::parse(readText(TRELLAN_SOURCE_DIR "/docs/trellan-update.schema.json")));
    EXPECT_TRUE(schema.violations(document).empty()) << result.out;
    EXPECT_TRUE(result.out.starts_with("{\n  \"schemaVersion\": 1,\n  \"command\": \"history\",\n  \"runs\": ["));
    EXPECT_EQ(document["runs"].size(), 2U);
    EXPECT_EQ(document["runs"][1]["result"], "interrupted");
}

TEST_F(HistoryCommand, ComplainsOfATornLineAndEndsWith0)
{
    const std::string path = folder.write("events", runOfOneElement + std::string("{\"time\":")).string();
    const RunResult result = ran({"history", path});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "2024-05-01T10:00:00.000Z  /fw (2.3): nothing updated: failed\n");
    EXPECT_EQ(result.err, "trellan-update: " + path + ": line 4 is torn, and is skipped\n");
}

TEST_F(HistoryCommand, EndsWith1WhereTheFileCannotBeRead)
{
    const RunResult result = ran({"history", (folder.path() / "absent").string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "trellan-update: " + (folder.path() / "absent").string() +
                              " cannot be read: No such file or directory\n");
}

TEST_F(HistoryCommand, HasADocumentWithTheErrorWhereTheFileCannotBeRead)
{
    const std::string path = (folder.path() / "absent").string();
    const RunResult result = ran({"history", "--json", path});
    EXPECT_EQ(result.status, 1);
    const nlohmann::ordered_json expected = {
        {"schemaVersion", 1},
        {"command", "history"},
        {"error", {{"status", 1}, {"message", path + " cannot be read: No such file or directory"}}}};
    EXPECT_EQ(conformingDocument(result.out), expected);
    EXPECT_EQ(result.err, "trellan-update: " + path + " cannot be read: No such file or directory\n");
}

TEST_F(HistoryCommand, PrintsNothingWhereItIsToBeQuiet)
{
    const RunResult result = ran({"history", "-q", folder.write("events", runOfOneElement).string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
}
