// What is read from a file of events, and shown of it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TempDir.h"
#include "tool/update/History.h"

using nlohmann::ordered_json;
using testing::ElementsAre;
using TrellanTool::History;
using TrellanTool::historyText;
using TrellanTool::readHistory;

namespace {

const std::string start =
    R"({"time":"2024-05-01T10:00:00.000Z","run":"a","event":"start","archive":{"path":"/fw","version":"2.3"},)"
    R"("target":null,"elements":[{"index":1,"name":"UserFirmware","from":"1.0","to":"2.0"},)"
    R"({"index":4,"name":"UserFpga","from":"","to":"3.1"}]})"
    "\n";
const std::string phase0 = R"({"time":"2024-05-01T10:00:01.000Z","run":"a","event":"phase","phase":0})"
                           "\n";
const std::string phase1 = R"({"time":"2024-05-01T10:00:02.000Z","run":"a","event":"phase","phase":1})"
                           "\n";
const std::string failed =
    R"({"time":"2024-05-01T10:00:03.000Z","run":"a","event":"result","status":1,"result":"failed","elements":[)"
    R"({"index":1,"name":"UserFirmware","from":"1.0","to":"2.0","state":"updated","errors":[]},)"
    R"({"index":4,"name":"UserFpga","from":"","to":"3.1","state":"failed","errors":[{"code":5,"text":"verify"}]}]})"
    "\n";

ordered_json historyRuns(const History& history)
{
    ordered_json runs = ordered_json::array();
    for (const TrellanTool::HistoryRun& run : history.runs) {
        runs.push_back(ordered_json(TrellanTool::historyRecord(run)));
    }
    return runs;
}

class Histories : public testing::Test {
protected:
    History read(const std::string& events) const { return readHistory(folder.write("events", events).string()); }

    TempDir folder;
};

}  // namespace

TEST_F(Histories, OfARunSaysWhatWasUpdatedAndHowItEnded)
{
    const History history = read(start + phase0 + phase1 + failed);
    EXPECT_THAT(history.complaints, ElementsAre());
    EXPECT_EQ(historyText(history), "2024-05-01T10:00:00.000Z  /fw (2.3): updated UserFirmware 1.0 -> 2.0: failed\n");
}

TEST_F(Histories, GivesTheRunsAsValues)
{
    EXPECT_EQ(historyRuns(read(start + phase0 + phase1 + failed)).dump(),
              R"([{"run":"a","time":"2024-05-01T10:00:00.000Z","archive":{"path":"/fw","version":"2.3"},)"
              R"("result":"failed","phase":1,"elements":[)"
              R"({"index":1,"name":"UserFirmware","from":"1.0","to":"2.0","state":"updated","errors":[]},)"
              R"({"index":4,"name":"UserFpga","from":"","to":"3.1","state":"failed",)"
              R"("errors":[{"code":5,"text":"verify"}]}]}])");
}

TEST_F(Histories, ShowsARunWithoutResultAsInterruptedInThePhaseThatItHadReached)
{
    const History history = read(start + phase0 + phase1);
    EXPECT_EQ(historyText(history),
              "2024-05-01T10:00:00.000Z  /fw (2.3): was to update UserFirmware 1.0 -> 2.0, UserFpga - -> 3.1: "
              "interrupted in phase 1\n");
    EXPECT_EQ(historyRuns(history).dump(),
              R"([{"run":"a","time":"2024-05-01T10:00:00.000Z","archive":{"path":"/fw","version":"2.3"},)"
              R"("result":"interrupted","phase":1,"elements":[)"
              R"({"index":1,"name":"UserFirmware","from":"1.0","to":"2.0","state":null,"errors":[]},)"
              R"({"index":4,"name":"UserFpga","from":"","to":"3.1","state":null,"errors":[]}]}])");
}

TEST_F(Histories, SkipsALineWithANulByte)
{
    const std::string torn = phase1.substr(0, phase1.size() - 1) + '\0' + phase1;
    const History history = read(start + phase0 + torn + '\0' + '\n');
    EXPECT_THAT(history.complaints, ElementsAre("lines 3 to 4 are torn, and are skipped"));
    EXPECT_EQ(history.runs.at(0).phase, 0U);
}

TEST_F(Histories, TellsLinesInARowThatAreSkippedTogether)
{
    const History history = read("x\nx\n" + start + "[]\n[]\n[]\nx\n" + phase0 + "{\n\n{\n");
    EXPECT_THAT(history.complaints, ElementsAre("lines 1 to 2 are torn, and are skipped",
                                                "lines 4 to 6 are no events of an update, and are skipped",
                                                "line 7 is torn, and is skipped", "line 9 is torn, and is skipped",
                                                "line 11 is torn, and is skipped"));
    EXPECT_EQ(history.runs.size(), 1U);
}

TEST_F(Histories, ShowsARunThatReachedNoPhase)
{
    const History history = read(start);
    EXPECT_THAT(historyText(history), testing::EndsWith(": interrupted before the first phase\n"));
    EXPECT_TRUE(historyRuns(history).at(0).at("phase").is_null());
}

TEST_F(Histories, KeepsRunsApartWhoseLinesMix)
{
    const std::string other =
        R"({"time":"2024-05-01T11:00:00.000Z","run":"b","event":"start","archive":{"path":"/new","version":""},)"
        R"("target":"/t","elements":[]})"
        "\n";
    const std::string end =
        R"({"time":"2024-05-01T11:00:01.000Z","run":"b","event":"result","status":0,"result":"success","elements":[]})"
        "\n";
    EXPECT_EQ(historyText(read(start + other + phase0 + end + failed)),
              "2024-05-01T10:00:00.000Z  /fw (2.3): updated UserFirmware 1.0 -> 2.0: failed\n"
              "2024-05-01T11:00:00.000Z  /new: nothing updated: success\n");
}

TEST_F(Histories, SkipsATornLine)
{
    const History history = read(start + R"({"time":"2024-05-01T1)" + "\n" + failed);
    EXPECT_THAT(history.complaints, ElementsAre("line 2 is torn, and is skipped"));
    EXPECT_EQ(historyRuns(history).at(0).at("result"), "failed");
}

TEST_F(Histories, SkipsATornLastLine)
{
    const History history = read(start + phase0 + phase1.substr(0, 40));
    EXPECT_THAT(history.complaints, ElementsAre("line 3 is torn, and is skipped"));
    EXPECT_EQ(historyRuns(history).at(0).at("phase"), 0);
}

TEST_F(Histories, TakesALastLineThatLacksItsEndAlone)
{
    const History history = read(start + phase0.substr(0, phase0.size() - 1));
    EXPECT_THAT(history.complaints, ElementsAre());
    EXPECT_EQ(historyRuns(history).at(0).at("phase"), 0);
}

TEST_F(Histories, KnowsARunWhoseStartIsTorn)
{
    const History history = read(start.substr(20) + phase1 + failed);
    EXPECT_EQ(historyText(history),
              "2024-05-01T10:00:02.000Z  an unknown archive: updated UserFirmware 1.0 -> 2.0: failed\n");
    EXPECT_TRUE(historyRuns(history).at(0).at("archive").is_null());
}

TEST_F(Histories, SkipsWhatIsNoEvent)
{
    for (const char* const line : {
             "42",
             "[]",
             R"({"time":"t","run":"a"})",
             R"({"time":"t","run":7,"event":"phase","phase":0})",
             R"({"time":"t","run":"a","event":"phase","phase":-1})",
             R"({"time":"t","run":"a","event":"phase","phase":4294967296})",
             R"({"time":"t","run":"a","event":"start","archive":"x","elements":[]})",
             R"({"time":"t","run":"a","event":"start","archive":{"path":"","version":""},"elements":[3]})",
             R"({"time":"t","run":"a","event":"start","archive":{"path":"","version":""},"elements":{}})",
             R"({"time":"t","run":"a","event":"result","result":"odd","elements":[]})",
             R"({"time":"t","run":"a","event":"result","result":"failed","elements":[{"index":1,"name":"","from":"",)"
             R"("to":"","state":"failed","errors":[{"code":"5","text":""}]}]})",
         }) {
        const History history = read(line + std::string("\n"));
        EXPECT_THAT(history.complaints, ElementsAre("line 1 is no event of an update, and is skipped")) << line;
        EXPECT_TRUE(history.runs.empty()) << line;
    }
}

TEST_F(Histories, SkipsALineWithAnErrorOfMoreThan32Members)
{
    std::string members;
    for (int i = 0; i < 30; ++i) {
        members += "\"m" + std::to_string(i) + "\":0,";
    }
    std::string large = failed;
    large.replace(large.find(R"("text":)"), 0, members);
    EXPECT_THAT(read(start + large).complaints, ElementsAre());
    large.replace(large.find(R"("text":)"), 0, "\"m30\":0,");
    EXPECT_THAT(read(start + large).complaints, ElementsAre("line 2 is no event of an update, and is skipped"));
}

TEST_F(Histories, SkipsALineWhoseErrorsAreNestedDeeperThanTheStack)
{
    const std::string deep = std::string(200'000, '[') + std::string(200'000, ']');
    std::string nested = failed;
    nested.replace(nested.find(R"("text":)"), 0, R"("extra":)" + deep + ",");
    const History history = read(start + nested);
    EXPECT_THAT(history.complaints, ElementsAre("line 2 is no event of an update, and is skipped"));
    EXPECT_EQ(historyRuns(history)[0]["result"], "interrupted");
}

TEST_F(Histories, LeavesARunAsItWasWhereAnEventOfItIsNone)
{
    const std::string wrong = R"({"time":"t","run":"a","event":"result","result":"success","elements":[{"index":1}]})"
                              "\n";
    EXPECT_THAT(historyText(read(start + wrong)), testing::EndsWith(": interrupted before the first phase\n"));
}

TEST_F(Histories, PassesOverEventsThatItDoesNotKnowAndBlankLines)
{
    const History history = read("\n" + start + "\n" + R"({"time":"t","run":"a","event":"later","x":1})" + "\n");
    EXPECT_THAT(history.complaints, ElementsAre());
    EXPECT_EQ(history.runs.size(), 1U);
}

TEST_F(Histories, KeepsARunOnOneLineWhateverItsTextsHold)
{
    EXPECT_EQ(historyText(read(R"({"time":"t","run":"a","event":"start","archive":{"path":"/a\nb\r","version":""},)"
                               R"("elements":[]})"
                               "\n")),
              "t  /a b : nothing updated: interrupted before the first phase\n");
}

TEST_F(Histories, OfAnEmptyFileHasNoRuns)
{
    EXPECT_EQ(historyText(read("")), "");
    EXPECT_EQ(historyRuns(read("")).dump(), "[]");
}

TEST_F(Histories, IsRefusedWhereTheFileCannotBeRead)
{
    const auto reasonFor = [](const std::string& path) -> std::string {
        try {
            readHistory(path);
        } catch (const TrellanTool::HistoryError& error) {
            return error.what();
        }
        return "";
    };
    const std::string absent = (folder.path() / "absent").string();
    EXPECT_EQ(reasonFor(absent), absent + " cannot be read: No such file or directory");
    EXPECT_EQ(reasonFor(folder.path().string()), folder.path().string() + " cannot be read: Is a directory");
}
