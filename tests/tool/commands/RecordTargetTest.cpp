// The command that writes the target's inventory down.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/FileSizeLimit.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;
using testing::HasSubstr;

namespace {

class Recording : public testing::Test {
protected:
    // The values of the only board's element in the record, beside what every element of these tests has.
    static ordered_json elementIn(const std::string& record)
    {
        ordered_json parameters = ordered_json::parse(record)["tree"]["items"][0]["items"][0]["items"][0]["parameters"];
        for (const char* const usual : {"ID", "CONFIGURATION", "VALID", "ACTIVE"}) {
            parameters.erase(usual);
        }
        return parameters;
    }

    static ordered_json withElement(const ordered_json& parameters)
    {
        return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {updateElement(1, parameters)})});
    }
};

}  // namespace

TEST_F(Recording, WritesItemsInTheirOrderWithWhatIsReadOfThem)
{
    const SimulatedTarget device(
        target({board("IOROUTER[2]", {{"UNITNAME", "U"}, {"PRODUCT/SERIAL_NUMBER", 7}, {"PRODUCT/BOARD_TYPE", "IO"}},
                      {fileElement(3, {{"LOCATION", "etc/a\"b"}, {"VERSION", "01.2.0"}})}),
                item("HCN", {})}));
    const RunResult result = ran({"record"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, R"({
  "tree": {
    "id": "ROOT",
    "items": [
      {
        "id": "IOROUTER[2]",
        "parameters": {
          "PRODUCT/BOARD_TYPE": "IO",
          "PRODUCT/SERIAL_NUMBER": 7,
          "UNITNAME": "U"
        },
        "items": [
          {
            "id": "UPDATE_INFO",
            "items": [
              {
                "id": "FILESYSTEM_ELEMENT[3]",
                "parameters": {
                  "ID": 3,
                  "LOCATION": "etc/a\"b",
                  "VERSION": "1.2",
                  "CONFIGURATION": 0,
                  "VALID": 1,
                  "ACTIVE": 1
                }
              }
            ]
          }
        ]
      },
      {
        "id": "HCN"
      }
    ]
  }
}
)");
}

TEST_F(Recording, OfATargetWithoutItemsIsTheSmallestTargetFile)
{
    const SimulatedTarget device(target({}));
    EXPECT_EQ(ran({"record"}).out, "{\n  \"tree\": {\n    \"id\": \"ROOT\"\n  }\n}\n");
}

TEST_F(Recording, CountsItsItemsWhereMoreDiagnosticsAreAskedFor)
{
    const SimulatedTarget device(withElement({{"NAME", "A"}}));
    EXPECT_EQ(ran({"record", "--verbose"}).err, "trellan-update: 4 items recorded\n");
}

TEST_F(Recording, HeedsNoFilterAndSaysSo)
{
    const SimulatedTarget device(withElement({{"NAME", "A"}}));
    const std::string whole = ran({"record"}).out;
    const RunResult result = ran({"record", "--element-names", "B", "--configuration"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, whole);
    EXPECT_EQ(result.err,
              "trellan-update: note: --element-names has no meaning for record\n"
              "trellan-update: note: --configuration has no meaning for record\n");
}

TEST_F(Recording, LeavesOutWhatCannotBeReadAndNamesItAndEndsWith1)
{
    ordered_json faulty = withElement({{"NAME", 5}, {"VALID", 256}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 4}});
    faulty["script"]["values"]["/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:VERSION"] = {{{"code", 1}, {"text", "no answer"}},
                                                                                  {{"code", 2}, {"text", "lost"}}};
    const SimulatedTarget device(faulty);
    const RunResult result = ran({"record"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(elementIn(result.out), (ordered_json{{"CHECKSUM_CRC32", 4}}));
    EXPECT_EQ(result.err,
              "trellan-update: left out: NAME of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT: Parameter NAME of "
              "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT has another type.\n"
              "trellan-update: left out: VERSION of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT: no answer; lost\n"
              "trellan-update: left out: VALID of /ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT: Parameter VALID of "
              "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT has another type.\n");
}

TEST_F(Recording, SaysWhatAScanReportsThatSucceedsAndEndsWith1)
{
    ordered_json noisy = withElement({{"NAME", "A"}});
    noisy["script"]["scan"] = {{{"errors", {{{"code", 1}, {"text", "a node is silent"}}}}}};
    const SimulatedTarget device(noisy);
    const RunResult result = ran({"record"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(elementIn(result.out), (ordered_json{{"NAME", "A"}}));
    EXPECT_EQ(result.err, "trellan-update: a node is silent\n");
}

TEST_F(Recording, WritesNothingAndEndsWith3WhereTheScanFails)
{
    const TempDir folder;
    const std::string output = folder.write("record.json", "earlier").string();
    ordered_json dead = withElement({{"NAME", "A"}});
    dead["script"]["scan"] = {{{"result", 2}, {"errors", {{{"code", 1}, {"text", "no power"}}}}}, {{"result", 3}}};
    const SimulatedTarget device(dead);
    const RunResult result = ran({"record", "--output", output});
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, "trellan-update: no power\n");
    const RunResult silent = ran({"record"});
    EXPECT_EQ(silent.status, 3);
    EXPECT_EQ(silent.out, "");
    EXPECT_EQ(silent.err, "trellan-update: the target's inventory cannot be read\n");
    EXPECT_EQ(readText(output), "earlier");
}

TEST_F(Recording, WritesIntoAFileAsAWhole)
{
    const TempDir folder;
    const std::string output = folder.write("record.json", "earlier").string();
    const SimulatedTarget device(withElement({{"NAME", "A"}, {"TYPE_ID", 6}}));
    const std::string record = ran({"record"}).out;
    const RunResult result = ran({"record", "--output", output});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(readText(output), record);
    const FileSizeLimit limit(500);
    const RunResult full = ran({"record", "--output", output});
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "trellan-update: " + output + " cannot be written: File too large\n");
    EXPECT_EQ(readText(output), record);
}

TEST_F(Recording, WritesItsFileQuietlyToo)
{
    const TempDir folder;
    const SimulatedTarget device(target({}));
    const RunResult result = ran({"record", "-q", "--output", (folder.path() / "record").string()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(ordered_json::parse(readText(folder.path() / "record")), (ordered_json{{"tree", {{"id", "ROOT"}}}}));
}

TEST_F(Recording, HasNoJsonDocumentBesideItsFile)
{
    const RunResult result = ran({"record", "--json"});
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.err, HasSubstr("--json does not go with record"));
}
