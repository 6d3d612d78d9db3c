// Findings as text and as JSON.
#include <gtest/gtest.h>

#include "json/Json.h"
#include "tool/documents/Findings.h"

using namespace TrellanTool;
using ZoNTrellanInspector::ZoTSeverity;

namespace {

Finding aboutAFile()
{
    return {"checksum",
            ZoTSeverity::ERROR,
            3,
            std::nullopt,
            "hcn-cpld.bin",
            "/files/3/checksumCrc32",
            TextPlace{9, 5},
            "the checksum is another",
            {},
            {}};
}

}  // namespace

TEST(Findings, AreShownWithTheirPlaceAndRule)
{
    EXPECT_EQ(findingText(aboutAFile(), "archive.json"),
              "archive.json:9:5: error: files[3] \"hcn-cpld.bin\": the checksum is another [checksum]");
}

TEST(Findings, AboutABoardNameIt)
{
    Finding finding = aboutAFile();
    finding.board = 1;
    finding.severity = ZoTSeverity::WARNING;
    EXPECT_EQ(findingText(finding, "d.json"),
              "d.json:9:5: warning: files[3] boards[1] \"hcn-cpld.bin\": the checksum is another [checksum]");
}

TEST(Findings, AboutNothingInTheDescriptionHaveNoPlace)
{
    const Finding finding = {"unlisted-file", ZoTSeverity::NOTE, {}, {}, "", {}, {}, "x.bin is in no entry", {}, {}};
    EXPECT_EQ(findingText(finding, "archive.json"), "archive.json: note: x.bin is in no entry [unlisted-file]");
    EXPECT_EQ(findingRecord(finding), TrellanJson::ordered_json({{"rule", "unlisted-file"},
                                                                 {"severity", "note"},
                                                                 {"file", nullptr},
                                                                 {"board", nullptr},
                                                                 {"pointer", nullptr},
                                                                 {"line", nullptr},
                                                                 {"column", nullptr},
                                                                 {"message", "x.bin is in no entry"}}));
}

TEST(Findings, HaveTheirPlacesInJson)
{
    EXPECT_EQ(findingRecord(aboutAFile()), TrellanJson::ordered_json({{"rule", "checksum"},
                                                                      {"severity", "error"},
                                                                      {"file", 3},
                                                                      {"board", nullptr},
                                                                      {"pointer", "/files/3/checksumCrc32"},
                                                                      {"line", 9},
                                                                      {"column", 5},
                                                                      {"message", "the checksum is another"}}));
}
