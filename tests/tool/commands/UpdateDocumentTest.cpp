// The document of an update after each way in which it may end; what it says before that is tested with the dry run.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;
using testing::ElementsAre;
using testing::EndsWith;

namespace {

constexpr unsigned checksumOfContent = 0xFEC530A9;  // CRC-32 of "content"

// Five elements: three to update, one that is up to date, one for which there is no file.
ordered_json deviceWith(const ordered_json& scripted)
{
    const auto element = [](unsigned id, const char* name, unsigned checksum) {
        return updateElement(id, {{"NAME", name}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", checksum}});
    };
    ordered_json device = target({board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "AI8100"}, {"PRODUCT/NAME", "Inputs"}},
                                        {element(1, "IoFirmware", 1), element(2, "IoFpga", 2), element(3, "IoCpld", 3),
                                         element(4, "IoIpl", checksumOfContent), element(5, "Calibration", 5)})});
    if (!scripted.empty()) {
        device["script"] = scripted;
    }
    return device;
}

ordered_json entryOf(unsigned id)
{
    return fileEntry(std::to_string(id) + ".bin", {{"boardType", "AI8100"},
                                                   {"id", id},
                                                   {"sequence", id},
                                                   {"version", "1.0"},
                                                   {"checksumCrc32", checksumOfContent}});
}

// An archive for four of the elements, each in a phase of its own.
class ArchiveForInputs : public TestArchive {
public:
    ArchiveForInputs() : TestArchive(description({entryOf(1), entryOf(2), entryOf(3), entryOf(4)}))
    {
        for (const char* const name : {"1.bin", "2.bin", "3.bin", "4.bin"}) {
            addFile(name, "content");
        }
    }
};

// The document of an update that ends with `status`, in a process of its own: the errors that it reports stay in that.
ordered_json documentOf(const TestArchive& archive, int status, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"update", archive.path(), "--json", "--no-progress"});
    const ProcessResult result = runProcess(TRELLAN_TOOL, options, archive.path(),
                                            {std::string("TRELLAN_TARGET=") + ::getenv("TRELLAN_TARGET")});
    EXPECT_EQ(result.status, status) << result.errors;
    return conformingDocument(result.output);
}

std::vector<std::string> statesIn(const ordered_json& document)
{
    std::vector<std::string> states;
    for (const ordered_json& element : document["elements"]) {
        states.push_back(element["state"]);
    }
    return states;
}

}  // namespace

TEST(UpdateDocument, OfASuccessTellsWhatWasUpdatedAndNoError)
{
    const SimulatedTarget target(deviceWith({}));
    const ordered_json document = documentOf(ArchiveForInputs(), 0, {"--exclude", "1"});
    EXPECT_THAT(statesIn(document), ElementsAre("updated", "excluded", "updated", "upToDate", "noFile"));
    EXPECT_FALSE(document.contains("error"));
    EXPECT_EQ(document["errors"], ordered_json::array());
    EXPECT_EQ(document["elements"][0]["errors"], ordered_json::array());
    EXPECT_FALSE(document["elements"][1].contains("errors"));
    EXPECT_FALSE(document["elements"][0].contains("verified"));
}

TEST(UpdateDocument, OfAStartThatFailsTellsWhatItCancelled)
{
    const SimulatedTarget target(deviceWith(
        {{"elements",
          {{"/ROOT/IOMODULE#2", {{"start", {{{"errors", {{{"code", 7}, {"text", "write-protected"}}}}}}}}}}}}));
    const ordered_json document = documentOf(ArchiveForInputs(), 1);
    EXPECT_THAT(statesIn(document), ElementsAre("updated", "failed", "cancelled", "upToDate", "noFile"));
    EXPECT_FALSE(document.contains("error"));
    EXPECT_EQ(document["elements"][1]["errors"],
              ordered_json::parse(R"([{"code": 7, "text": "write-protected", "originNode": 0, "time": 0.0,
                                       "mainModule": 0, "subModule": 0, "function": "", "line": 0}])"));
    EXPECT_EQ(document["errors"], ordered_json::array());
    EXPECT_EQ(document["elements"][2]["errors"], ordered_json::array());
}

TEST(UpdateDocument, OfAMissingFileTellsIt)
{
    const SimulatedTarget target(deviceWith({}));
    const ArchiveForInputs archive;
    std::filesystem::remove(archive.path() + "/3.bin");
    EXPECT_THAT(statesIn(documentOf(archive, 1, {"--no-check"})),
                ElementsAre("updated", "updated", "missingFile", "upToDate", "noFile"));
}

TEST(UpdateDocument, OfATargetThatCannotBeLockedTellsThatNothingWasStarted)
{
    const SimulatedTarget target(
        deviceWith({{"lock", {{{"errors", {{{"code", 4}, {"text", "The target is locked."}}}}}}}}));
    const ordered_json document = documentOf(ArchiveForInputs(), 1);
    EXPECT_THAT(statesIn(document), ElementsAre("notStarted", "notStarted", "notStarted", "upToDate", "noFile"));
    EXPECT_EQ(document["errors"],
              ordered_json::parse(R"([{"code": 4, "text": "The target is locked.", "originNode": 0, "time": 0.0,
                                       "mainModule": 0, "subModule": 0, "function": "", "line": 0}])"));
}

TEST(UpdateDocument, OfATargetThatCouldNotSaveWhatWasUpdatedTellsThatBesideTheElements)
{
    const SimulatedTarget target(
        deviceWith({{"scan", {ordered_json::object(), {{"result", 1}, {"errors", {{{"code", 9}, {"text", "gone"}}}}}}},
                    {"unlock", {{{"errors", {{{"code", 7}, {"text", "not saved"}, {"originNode", 815}}}}}}}}));
    const ordered_json document = documentOf(ArchiveForInputs(), 1, {"--verify"});
    EXPECT_THAT(statesIn(document), ElementsAre("updated", "updated", "updated", "upToDate", "noFile"));
    EXPECT_FALSE(document.contains("error"));
    EXPECT_EQ(document["errors"],
              ordered_json::parse(R"([{"code": 7, "text": "not saved", "originNode": 815, "time": 0.0,
                                       "mainModule": 0, "subModule": 0, "function": "", "line": 0},
                                      {"code": 9, "text": "gone", "originNode": 0, "time": 0.0,
                                       "mainModule": 0, "subModule": 0, "function": "", "line": 0}])"));
    EXPECT_EQ(document["elements"][0]["errors"], ordered_json::array());
    EXPECT_TRUE(document["elements"][0]["verified"].is_null());
}

TEST(UpdateDocument, OfAVerificationTellsWhatAgreesAndWhatCannotBeTold)
{
    const SimulatedTarget target(deviceWith({}));
    TestArchive archive(description({entryOf(1), entryOf(2)}));
    archive.addFile("1.bin", "content");
    archive.addFile("2.bin", "another content");
    const ordered_json document = documentOf(archive, 1, {"--no-check", "--verify"});
    EXPECT_THAT(statesIn(document), ElementsAre("updated", "updated", "noFile", "noFile", "noFile"));
    EXPECT_EQ(document["elements"][0]["verified"], true);
    EXPECT_EQ(document["elements"][1]["verified"], false);
    EXPECT_FALSE(document["elements"][2].contains("verified"));
    EXPECT_FALSE(document.contains("error"));
}

TEST(UpdateDocument, OfAFailureBesideAVerificationTellsThatWhatFailedIsNotVerified)
{
    const SimulatedTarget target(deviceWith(
        {{"elements", {{"/ROOT/IOMODULE#3", {{"finish", {{{"results", {{{"code", 8}, {"text", "verify"}}}}}}}}}}}}));
    const ordered_json document = documentOf(ArchiveForInputs(), 1, {"--verify"});
    EXPECT_THAT(statesIn(document), ElementsAre("updated", "updated", "failed", "upToDate", "noFile"));
    EXPECT_EQ(document["elements"][1]["verified"], true);
    EXPECT_TRUE(document["elements"][2]["verified"].is_null());
}

TEST(UpdateDocument, OfAPlanThatDoesNotHoldTellsTheReasonAndTheElements)
{
    const SimulatedTarget target(deviceWith({}));
    const ordered_json document = documentOf(ArchiveForInputs(), 6, {"--plan", "/nowhere/plan.json"});
    EXPECT_EQ(document["error"]["status"], 6);
    EXPECT_THAT(std::string(document["error"]["message"]),
                EndsWith("the plan /nowhere/plan.json cannot be read: No such file or directory; nothing was done"));
    EXPECT_THAT(statesIn(document), ElementsAre("update", "update", "update", "upToDate", "noFile"));
}
