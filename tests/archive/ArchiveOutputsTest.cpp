// What is printed of an archive: its version, its files as a table, its description as JSON.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArchiveReader.h"
#include "support/Table.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;
using ::testing::ElementsAre;

namespace {

constexpr auto version = [](ZoCUpdateArchive& archive) { archive.outputArchiveVersion(); };
constexpr auto table = [](ZoCUpdateArchive& archive) { archive.printArchive(); };
constexpr auto json = [](ZoCUpdateArchive& archive) { archive.outputDescriptionFile(); };

template <class Print>
std::string textOf(const ordered_json& description, Print print)
{
    TestArchive archive(description);
    ArchiveReader reader(archive);
    EXPECT_TRUE(reader.read());
    return reader.textOf(print);
}

TableRows rowsOf(const ordered_json& description)
{
    return tableRows(textOf(description, table));
}

std::string archiveVersionText(const std::string& version)
{
    ordered_json document = description({});
    document["info"]["archiveVersion"] = version;
    return textOf(document, ::version);
}

ordered_json entry(const ordered_json& members)
{
    ordered_json result = {{"name", "a.bin"}, {"sequence", 1}, {"version", "1.2"}, {"checksumCrc32", 5}};
    result.update(members);
    return result;
}

}  // namespace

TEST(ArchiveVersion, IsPrintedAsOneLine)
{
    EXPECT_EQ(archiveVersionText("23.1.1"), "23.1.1\n");
    EXPECT_EQ(archiveVersionText("23.1.4"), "23.1.4\n");
    EXPECT_EQ(archiveVersionText("23.1.10b2p3"), "23.1.10b2p3\n");
}

TEST(ArchiveVersion, AlwaysHasThreeNumbers)
{
    EXPECT_EQ(archiveVersionText("23.1"), "23.1.0\n");
    EXPECT_EQ(archiveVersionText("23"), "23.0.0\n");
    EXPECT_EQ(archiveVersionText("23.1.0"), "23.1.0\n");
    EXPECT_EQ(archiveVersionText("23.1a12"), "23.1.0a12\n");
    EXPECT_EQ(archiveVersionText("23.1r2p1"), "23.1.0r2p1\n");
    EXPECT_EQ(archiveVersionText("5.0s3.7"), "5.0.0s3.7\n");
}

TEST(ArchiveVersion, OfTheThirdNumberNineIsNotRewritten)
{
    EXPECT_EQ(archiveVersionText("23.1.9"), "23.1.9\n");
}

TEST(PrintArchive, WithoutFilesPrintsTheHeaderOnly)
{
    EXPECT_EQ(textOf(description({}), table),
              "BoardType | File | Version | Checksum | Id/TargetPath\n"
              "-----------------------------------------------------\n");
}

TEST(PrintArchive, ShowsAFileInEachRowInTheirOrder)
{
    EXPECT_EQ(textOf(description({entry({{"boardType", "KR5120"}, {"id", 7}, {"sequence", 9}}),
                                  entry({{"boardType", "A"}, {"targetPath", "/x"}, {"version", nullptr}})}),
                     table),
              "BoardType | File  | Version | Checksum | Id/TargetPath\n"
              "------------------------------------------------------\n"
              "KR5120    | a.bin | 1.2     | 5        | 7            \n"
              "A         | a.bin | ---     | 5        | /x           \n");
}

TEST(PrintArchive, ShowsAVersionWhoseFirstNumberIsZero)
{
    EXPECT_EQ(rowsOf(description({entry({{"boardType", "A"}, {"id", 1}, {"version", "0.1"}})})),
              (TableRows{{"A", "a.bin", "0.1", "5", "1"}}));
}

TEST(PrintArchive, ShowsNumbersAsDecimalDigits)
{
    EXPECT_EQ(rowsOf(description({entry({{"boardType", "A"}, {"id", 4294967295u}, {"checksumCrc32", 4294967295u}}),
                                  entry({{"boardType", "A"}, {"id", 0}, {"checksumCrc32", 0}})})),
              (TableRows{{"A", "a.bin", "1.2", "4294967295", "4294967295"}, {"A", "a.bin", "1.2", "0", "0"}}));
}

TEST(PrintArchive, JoinsBoardTypes)
{
    EXPECT_EQ(
        rowsOf(description({entry({{"boardType", {"A", "B", "C"}}, {"id", 1}}),
                            entry({{"boardType", {"", "A", ""}}, {"id", 1}}),
                            entry({{"boardType", ordered_json::array()}, {"id", 1}})})),
        (TableRows{
            {"A,B,C", "a.bin", "1.2", "5", "1"}, {",A,", "a.bin", "1.2", "5", "1"}, {"", "a.bin", "1.2", "5", "1"}}));
}

TEST(PrintArchive, ShowsWhatEachBoardIsGiven)
{
    const ordered_json boards = ordered_json::array(
        {{{"boardType", {"A", "B"}}, {"id", 3}}, {{"boardType", "C"}}, {{"boardType", "D"}, {"id", 5}}});
    const ordered_json first = ordered_json::array({{{"boardType", {"A", "B"}}, {"id", 3}}, {{"boardType", "C"}}});
    EXPECT_EQ(rowsOf(description({entry({{"boards", first}, {"id", 7}}), entry({{"boards", boards}, {"id", 8}})})),
              (TableRows{{"A,B,C", "a.bin", "1.2", "5", "A,B: 3, others: 7"},
                         {"A,B,C,D", "a.bin", "1.2", "5", "A,B: 3, D: 5, others: 8"}}));
}

TEST(PrintArchive, NamesABoardWithAnEmptyTypeByNothing)
{
    const ordered_json boards = ordered_json::array({{{"boardType", ""}, {"id", 3}}, {{"boardType", ""}, {"id", 5}}});
    EXPECT_EQ(rowsOf(description({entry({{"boards", boards}})})), (TableRows{{",", "a.bin", "1.2", "5", ": 3, : 5"}}));
}

TEST(PrintArchive, ShowsATargetPathBehindAnIdOfOneDigit)
{
    // No description gives one entry both of them.
    TestArchive archive(description({entry({{"boardType", "A"}, {"id", 7}})}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    reader.archive().getUpdateFileList()[0].jsonEntry["targetPath"] = "/x";
    EXPECT_EQ(tableRows(reader.textOf(table)), (TableRows{{"A", "a.bin", "1.2", "5", "7, others: /x"}}));
}

TEST(PrintArchive, ShowsTargetPathsInTheSameWay)
{
    const ordered_json two =
        ordered_json::array({{{"boardType", "A"}, {"targetPath", "/a"}}, {{"boardType", "B"}, {"targetPath", "/b"}}});
    const ordered_json plain = ordered_json::array({{{"boardType", "A"}}});
    EXPECT_EQ(rowsOf(description({entry({{"boards", two}}), entry({{"boards", two}, {"targetPath", "/x"}}),
                                  entry({{"boards", plain}, {"targetPath", "/x"}})})),
              (TableRows{{"A,B", "a.bin", "1.2", "5", "A: /a, B: /b"},
                         {"A,B", "a.bin", "1.2", "5", "A: /a, B: /b, others: /x"},
                         {"A", "a.bin", "1.2", "5", "/x"}}));
}

TEST(PrintArchive, ShowsChecksumsReadFromTheFiles)
{
    TestArchive archive(
        description({without(entry({{"boardType", "A"}, {"id", 1}}), "checksumCrc32"),
                     without(entry({{"boardType", "B"}, {"id", 1}, {"name", "b.bit"}}), "checksumCrc32")}));
    archive.addFile("a.bin", UpdateFiles::bitstreamFile(1234567));
    archive.addFile("b.bit", UpdateFiles::bitstreamFile(1234567, 88));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    EXPECT_EQ(tableRows(reader.textOf(table)),
              (TableRows{{"A", "a.bin", "1.2", "1234567", "1"}, {"B", "b.bit", "1.2", "---", "1"}}));
}

TEST(PrintArchive, MarksMissingFiles)
{
    TestArchive archive(description(
        {entry({{"boardType", "A"}, {"id", 1}}), without(entry({{"boardType", "B"}, {"id", 2}}), "checksumCrc32")}));
    ArchiveReader reader(archive);
    ASSERT_FALSE(reader.read());
    EXPECT_EQ(tableRows(reader.textOf(table)),
              (TableRows{{"A", "a.bin", "1.2", "5", "1", ""}, {"B", "a.bin", "1.2", "---", "2", "[FILE MISSING]"}}));
}

TEST(OutputDescription, WithoutFilesHasAnEmptyList)
{
    EXPECT_EQ(textOf(description({}), json),
              "{\n"
              "    \"files\": [],\n"
              "    \"info\": {\n"
              "        \"archiveName\": \"Test archive\",\n"
              "        \"archiveVersion\": \"2.3.4\",\n"
              "        \"formatVersion\": \"1.0\",\n"
              "        \"productName\": \"Test product\"\n"
              "    }\n"
              "}\n");
}

TEST(OutputDescription, WritesWhatWasReadWithMembersInOrder)
{
    const ordered_json info = {{"productName", "Product"}, {"formatVersion", "1.7"},   {"archiveVersion", "23.1.0"},
                               {"archiveName", "Name"},    {"archiveVariant", "Lean"}, {"author", "not kept"}};
    const ordered_json boards =
        ordered_json::array({{{"id", 3}, {"boardType", {"B", "A"}}, {"boardVariant", {"v", nullptr}}}});
    const ordered_json file = {{"sequence", 2},          {"name", "a.bin"},   {"checksumCrc32", 4294967295u},
                               {"boards", boards},       {"mode", "upgrade"}, {"version", nullptr},
                               {"note", {-1, 2.5, true}}};
    EXPECT_EQ(
        textOf(ordered_json{{"info", info}, {"files", ordered_json::array({file})}, {"comment", "not kept"}}, json),
        "{\n"
        "    \"files\": [\n"
        "        {\n"
        "            \"boards\": [\n"
        "                {\n"
        "                    \"boardType\": [\n"
        "                        \"B\",\n"
        "                        \"A\"\n"
        "                    ],\n"
        "                    \"boardVariant\": [\n"
        "                        \"v\",\n"
        "                        null\n"
        "                    ],\n"
        "                    \"id\": 3\n"
        "                }\n"
        "            ],\n"
        "            \"checksumCrc32\": 4294967295,\n"
        "            \"mode\": \"upgrade\",\n"
        "            \"name\": \"a.bin\",\n"
        "            \"note\": [\n"
        "                -1,\n"
        "                2.5,\n"
        "                true\n"
        "            ],\n"
        "            \"sequence\": 2,\n"
        "            \"version\": null\n"
        "        }\n"
        "    ],\n"
        "    \"info\": {\n"
        "        \"archiveName\": \"Name\",\n"
        "        \"archiveVariant\": \"Lean\",\n"
        "        \"archiveVersion\": \"23.1\",\n"
        "        \"formatVersion\": \"1.0\",\n"
        "        \"productName\": \"Product\"\n"
        "    }\n"
        "}\n");
}

TEST(OutputDescription, FillsInChecksumsAndLeavesOutSkippedEntries)
{
    TestArchive archive(
        description({without(fileEntry("tree.json"), "checksumCrc32"), fileEntry("later.bin", {{"featureLevel", 3}}),
                     without(fileEntry("fpga.bit"), "checksumCrc32")}));
    archive.addFile("tree.json", UpdateFiles::inventoryFile({{"FIRMWARE/TYPE_ID", 1}}, 77));
    archive.addFile("fpga.bit", UpdateFiles::bitstreamFile(88, 91));
    ArchiveReader reader(archive, ZoNTrellanUpdater::OUTPUT_DESCRIPTION);
    ASSERT_TRUE(reader.read());
    EXPECT_EQ(nlohmann::json::parse(reader.textOf(json)).at("files"),
              nlohmann::json::array(
                  {fileEntry("tree.json", {{"checksumCrc32", 77}}), without(fileEntry("fpga.bit"), "checksumCrc32")}));
    EXPECT_FALSE(reader.file(0).jsonEntry.contains("checksumCrc32")) << "the record is only printed";
}

TEST(OutputDescription, PutsTheChecksumOfTheFileInPlaceOfOneThatMeansNone)
{
    const ordered_json none = {{"checksumCrc32", 4294967294u}};
    TestArchive archive(description({fileEntry("a.bit", none), fileEntry("b.bit", none)}));
    archive.addFile("a.bit", UpdateFiles::bitstreamFile(88));
    archive.addFile("b.bit", UpdateFiles::bitstreamFile(88, 91));
    ArchiveReader reader(archive, ZoNTrellanUpdater::OUTPUT_DESCRIPTION);
    ASSERT_TRUE(reader.read());
    EXPECT_EQ(nlohmann::json::parse(reader.textOf(json)).at("files"),
              nlohmann::json::array({fileEntry("a.bit", {{"checksumCrc32", 88}}), fileEntry("b.bit", none)}))
        << "the entry as it was read, where its file has no checksum either";
}

TEST(OutputDescription, LeavesOutAnEmptyVariant)
{
    ordered_json document = description({});
    document["info"]["archiveVariant"] = "";
    EXPECT_EQ(textOf(document, json), textOf(description({}), json));
}

TEST(OutputDescription, KeepsCharactersBeyondAscii)
{
    ordered_json document = description({});
    document["info"]["productName"] = "Mess\u00FCr \u20AC \"x\" \\ \u0001";
    EXPECT_NE(textOf(document, json).find("\"productName\": \"Mess\u00FCr \u20AC \\\"x\\\" \\\\ \\u0001\"\n"),
              std::string::npos);
}

TEST(OutputDescription, KeepsTextsBeyondANul)
{
    ordered_json document = description({});
    document["info"]["archiveName"] = std::string("Na\0me", 5);
    document["info"]["archiveVariant"] = std::string("\0x", 2);
    document["info"]["productName"] = std::string("Product\0", 8);
    EXPECT_EQ(nlohmann::json::parse(textOf(document, json)).at("info"), nlohmann::json(document["info"]));
}

TEST(OutputDescription, IsHandedOutAsOnePiece)
{
    TestArchive archive(description({fileEntry("a.bin"), fileEntry("b.bin")}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    reader.textOf(json);
    EXPECT_EQ(reader.messages.fragments().size(), 1u);
}

TEST(OutputDescription, PrintsPercentSignsAsTheyAre)
{
    ordered_json document = description({fileEntry("100%d%n.bin")});
    EXPECT_NE(textOf(document, json).find("\"name\": \"100%d%n.bin\""), std::string::npos);
}
