// The events of an update as lines of JSON.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <thread>

#include "support/TempDir.h"
#include "support/TextFile.h"
#include "tool/update/EventLog.h"
#include "tool/update/UtcTime.h"

using nlohmann::ordered_json;
using testing::ElementsAre;
using TrellanTool::EventLog;
using TrellanTool::UpdateElement;

namespace {

class EventLogs : public testing::Test {
protected:
    std::string path() const { return (folder.path() / "events").string(); }

    EventLog log()
    {
        return {path(), [this](const std::string& text) { said.push_back(text); }};
    }

    template <class Log>
    static void start(Log&& log, const std::string& path, const std::string& version,
                      const std::optional<std::string>& target, std::vector<UpdateElement> elements)
    {
        log.prepareStart(path, version, target, std::move(elements));
        log.start();
    }

    // The lines without time and run.
    std::vector<std::string> events() const
    {
        std::vector<std::string> result;
        for (ordered_json line : lines()) {
            line.erase("time");
            line.erase("run");
            result.push_back(line.dump());
        }
        return result;
    }

    std::vector<ordered_json> lines() const
    {
        std::vector<ordered_json> result;
        std::istringstream text(readText(path()));
        for (std::string line; std::getline(text, line);) {
            result.push_back(ordered_json::parse(line));
        }
        return result;
    }

    static std::vector<UpdateElement> threeElements()
    {
        return {{2, "UserFirmware", "Board, Firmware", "1.0", "2.0", 1},
                {4, "UserFpga", "Board, FPGA", "", "3.1", 0},
                {7, "Cpld", "Board, CPLD", "1.1", "", 1}};
    }

    TempDir folder;
    std::vector<std::string> said;
};

}  // namespace

TEST_F(EventLogs, BeginsWithWhatIsUpdated)
{
    start(log(), "/archive", "2.3.4", "/target.json", {{2, "UserFirmware", "Board, Firmware", "1.0", "2.0", 1}});
    EXPECT_THAT(events(), ElementsAre(R"({"event":"start","archive":{"path":"/archive","version":"2.3.4"},)"
                                      R"("target":"/target.json",)"
                                      R"("elements":[{"index":2,"name":"UserFirmware","from":"1.0","to":"2.0"}]})"));
}

TEST_F(EventLogs, BeginsOnceAndBeforeAllElseWhicheverThreadIsFirst)
{
    EventLog events_ = log();
    events_.prepareStart("/archive", "1.0", std::nullopt, {});
    events_.signal("SIGINT");  // nothing is written before the beginning
    std::thread([&] {
        events_.begin();
        events_.result(8, ordered_json::array());
    }).join();
    events_.begin();
    EXPECT_THAT(
        events(),
        ElementsAre(R"({"event":"start","archive":{"path":"/archive","version":"1.0"},"target":null,"elements":[]})",
                    R"({"event":"result","status":8,"result":"stalled","elements":[]})"));
}

TEST_F(EventLogs, KnowsNoTargetWhereNoneIsNamed)
{
    start(log(), "/archive", "1.0", std::nullopt, {});
    EXPECT_TRUE(lines().at(0).at("target").is_null());
}

TEST_F(EventLogs, TellsEachKindOfEvent)
{
    EventLog events_(path(), [](const std::string&) {});
    start(events_, "/archive", "1.0", std::nullopt, threeElements());
    events_.phase(0);
    events_.failure(4);
    events_.message("a line");
    events_.signal("SIGTERM");
    events_.result(143, ordered_json::array({{{"index", 4}, {"state", "failed"}}}));
    std::vector<std::string> rest = events();
    rest.erase(rest.begin());
    EXPECT_THAT(rest,
                ElementsAre(R"({"event":"phase","phase":0})", R"({"event":"failure","element":4,"name":"UserFpga"})",
                            R"({"event":"message","text":"a line"})",  //
                            R"({"event":"signal","signal":"SIGTERM"})",
                            R"({"event":"result","status":143,"result":"interrupted",)"
                            R"("elements":[{"index":4,"state":"failed"}]})"));
}

TEST_F(EventLogs, NamesTheResultOfEachExitStatus)
{
    EventLog events_(path(), [](const std::string&) {});
    start(events_, "/archive", "1.0", std::nullopt, {});
    for (const int status : {0, 1, 3, 4, 5, 6, 8, 129, 130, 143}) {
        events_.result(status, ordered_json::array());
    }
    std::vector<std::string> results;
    for (const ordered_json& line : lines()) {
        results.push_back(line.value("result", "-"));
    }
    EXPECT_THAT(results, ElementsAre("-", "success", "failed", "refused", "refused", "refused", "refused", "stalled",
                                     "interrupted", "interrupted", "interrupted"));
}

TEST_F(EventLogs, TellsProgressWhereThePercentageHasChanged)
{
    EventLog events_(path(), [](const std::string&) {});
    start(events_, "/archive", "1.0", std::nullopt, threeElements());
    events_.phase(0);
    events_.progress(0);
    events_.progress(0);
    events_.progress(50);
    events_.progress(100);
    events_.phase(1);
    events_.progress(100);
    events_.progress(100);
    std::vector<std::string> progress;
    for (const std::string& event : events()) {
        if (event.find("progress") != std::string::npos) {
            progress.push_back(event);
        }
    }
    EXPECT_THAT(progress, ElementsAre(R"({"event":"progress","phase":0,"percent":0,"overall":0})",
                                      R"({"event":"progress","phase":0,"percent":50,"overall":16})",
                                      R"({"event":"progress","phase":0,"percent":100,"overall":33})",
                                      R"({"event":"progress","phase":1,"percent":100,"overall":100})"));
}

TEST_F(EventLogs, CountsAnElementOfAnEarlierPhaseAsWhole)
{
    EventLog events_(path(), [](const std::string&) {});
    start(events_, "/archive", "1.0", std::nullopt,
          {{1, "Firmware", "A", "", "", 0}, {2, "Firmware", "B", "", "", 0}, {3, "Firmware", "C", "", "", 1}});
    events_.phase(1);
    events_.progress(50);
    EXPECT_EQ(events().back(), R"({"event":"progress","phase":1,"percent":50,"overall":83})");
}

TEST_F(EventLogs, TellsFailureAndProgressOfElementsThatItDoesNotKnow)
{
    EventLog events_(path(), [](const std::string&) {});
    start(events_, "/archive", "1.0", std::nullopt, {});
    events_.failure(0);
    events_.progress(40);
    EXPECT_EQ(events().back(), R"({"event":"progress","phase":0,"percent":40,"overall":40})");
    EventLog others(path(), [](const std::string&) {});
    start(others, "/archive", "1.0", std::nullopt, threeElements());
    others.failure(3);
    others.failure(8);
    std::vector<std::string> rest = events();
    rest.erase(std::remove_if(rest.begin(), rest.end(),
                              [](const std::string& event) { return event.find("failure") == std::string::npos; }),
               rest.end());
    EXPECT_THAT(rest, ElementsAre(R"({"event":"failure","element":0,"name":""})",
                                  R"({"event":"failure","element":3,"name":""})",
                                  R"({"event":"failure","element":8,"name":""})"));
}

TEST_F(EventLogs, MarksAllLinesOfARunAlikeAndThoseOfAnotherDifferently)
{
    for (int i = 0; i < 2; ++i) {
        EventLog events_(path(), [](const std::string&) {});
        start(events_, "/archive", "1.0", std::nullopt, {});
        events_.phase(0);
    }
    const std::vector<ordered_json> all = lines();
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[0]["run"], all[1]["run"]);
    EXPECT_EQ(all[2]["run"], all[3]["run"]);
    EXPECT_NE(all[1]["run"], all[2]["run"]);
}

TEST_F(EventLogs, TellsTheTimeInUtcWithMilliseconds)
{
    const std::string before = TrellanTool::utcText(std::chrono::system_clock::now());
    start(log(), "/archive", "1.0", std::nullopt, {});
    const std::string after = TrellanTool::utcText(std::chrono::system_clock::now());
    const std::string time = lines().at(0).at("time");
    EXPECT_LE(before, time);
    EXPECT_LE(time, after);
}

TEST_F(EventLogs, ReplacesBytesThatAreNotUtf8)
{
    start(log(), "/archive\xFF", "1.0", std::nullopt, {{0, "Name\xC3", "", "", "", 0}});
    EXPECT_EQ(lines().at(0).at("archive").at("path"), "/archive\xEF\xBF\xBD");
    EXPECT_EQ(lines().at(0).at("elements").at(0).at("name"), "Name\xEF\xBF\xBD");
}

TEST_F(EventLogs, WritesLettersOfAllLanguagesAsTheyAre)
{
    EventLog events_ = log();
    start(events_, "/archive", "1.0", std::nullopt, {});
    events_.message("Ger\xC3\xA4t");
    EXPECT_NE(readText(path()).find("\"Ger\xC3\xA4t\""), std::string::npos) << readText(path());
}

TEST_F(EventLogs, KeepsATextWithLineEndsOnOneLine)
{
    EventLog events_(path(), [](const std::string&) {});
    start(events_, "/archive", "1.0", std::nullopt, {});
    events_.message("two\nlines");
    EXPECT_EQ(lines().at(1).at("text"), "two\nlines");
}

TEST_F(EventLogs, WritesNothingBeforeTheStart)
{
    EventLog events_(path(), [](const std::string&) {});
    events_.message("early");
    events_.phase(0);
    EXPECT_EQ(readText(path()), "");
}

TEST_F(EventLogs, GoesNowhereWithoutAFile)
{
    EventLog events_(std::nullopt, [this](const std::string& text) { said.push_back(text); });
    start(events_, "/archive", "1.0", std::nullopt, threeElements());
    events_.phase(0);
    events_.progress(3);
    EXPECT_THAT(said, ElementsAre());
}

TEST_F(EventLogs, SaysOnceThatEventsCannotBeWritten)
{
    EventLog events_("/dev/full", [this](const std::string& text) { said.push_back(text); });
    start(events_, "/archive", "1.0", std::nullopt, threeElements());
    events_.phase(0);
    events_.result(0, ordered_json::array());
    EXPECT_EQ(events_.takeFault(), "");
    EXPECT_THAT(
        said,
        ElementsAre("events cannot be written to /dev/full: No space left on device; the update goes on without them"));
}

// The signal comes on a thread that must not speak.
TEST_F(EventLogs, SaysAtTheNextEventThatASignalCouldNotBeWritten)
{
    EventLog events_(folder.path() / "absent" / "events", [this](const std::string& text) { said.push_back(text); });
    events_.signal("SIGINT");
    EXPECT_THAT(said, ElementsAre());
    events_.message("line");
    EXPECT_EQ(said.size(), 1U);
}

TEST(UtcTime, IsAsPrecise)
{
    using namespace std::chrono;
    EXPECT_EQ(TrellanTool::utcText(system_clock::time_point(milliseconds(0))), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(TrellanTool::utcText(system_clock::time_point(milliseconds(1709251199007))), "2024-02-29T23:59:59.007Z");
    EXPECT_EQ(TrellanTool::utcText(system_clock::time_point(milliseconds(-1))), "1969-12-31T23:59:59.999Z");
}
