#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "Device.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

using nlohmann::ordered_json;

namespace {

ordered_json error(unsigned code, const std::string& text)
{
    return {{"code", code}, {"text", text}};
}

ordered_json failing(unsigned code, const std::string& text)
{
    ordered_json entry;
    entry["errors"] = ordered_json::array({error(code, text)});
    return entry;
}

// A device with one update element and `script`.
ordered_json scripted(const ordered_json& script)
{
    ordered_json document = target({board("HCN", {}, {updateElement(1, {{"VERSION", "1.0"}})})});
    document["script"] = script;
    return document;
}

// The same, with the script of the element.
ordered_json scriptedElement(const ordered_json& script)
{
    return scripted({{"elements", {{"/ROOT/HCN#1", script}}}});
}

const ordered_json normal = ordered_json::object();

// An update file beside the target, whose CRC-32 is 0xCBF43926.
std::filesystem::path updateFileFor(const SimulatedTarget& device)
{
    const std::filesystem::path file = device.folder() / "a.bin";
    std::ofstream(file) << "123456789";
    return file;
}

}  // namespace

TEST(Script, DecidesWhatAScanReturns)
{
    ordered_json failed = failing(1, "no answer");
    failed["result"] = 7;
    const SimulatedTarget device(scripted({{"scan", {failing(2, "noise"), failed, normal}}}));
    const Scan noisy;
    EXPECT_EQ(noisy.result, 0);
    EXPECT_NE(noisy.tree, nullptr);
    ASSERT_EQ(noisy.errors.count(), 1U);
    EXPECT_EQ(noisy.errors.text(0), "noise");

    testing::internal::CaptureStderr();
    const Scan refused;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(refused.result, 7);
    EXPECT_EQ(refused.tree, nullptr);
    ASSERT_EQ(refused.errors.count(), 1U);
    EXPECT_EQ(refused.errors.code(0), 1U);

    for (int scan = 0; scan < 2; ++scan) {
        const Scan again;
        EXPECT_EQ(again.result, 0);
        EXPECT_EQ(again.errors.count(), 0U);
    }
}

TEST(Script, MayLetAScanReturnAnyNumber)
{
    for (const int result : {-1, -2147483647 - 1, 2147483647}) {
        const SimulatedTarget device(scripted({{"scan", {{{"result", result}}}}}));
        const Scan scan;
        EXPECT_EQ(scan.result, result);
        EXPECT_EQ(scan.tree, nullptr);
        EXPECT_EQ(scan.errors.count(), 0U);
    }
}

TEST(Script, StatesAllPartsOfAnError)
{
    ordered_json entry;
    entry["errors"] = ordered_json::array({{{"code", 4294967295},
                                            {"text", "lost"},
                                            {"originNode", 11},
                                            {"timeStamp", 12345678901},
                                            {"mainModule", 12},
                                            {"subModule", 13},
                                            {"function", "poll"},
                                            {"line", 14}},
                                           error(2, "plain")});
    const SimulatedTarget device(scripted({{"scan", {entry}}}));
    Scan scan;
    ASSERT_EQ(scan.errors.count(), 2U);
    const ZoCErrorListPool& errors = scan.errors.get();
    EXPECT_EQ(errors.getErrorCode(0), 4294967295U);
    EXPECT_STREQ(errors.getErrorText(0), "lost");
    EXPECT_EQ(errors.getOriginNode(0), 11U);
    EXPECT_EQ(errors.getTimeStamp(0), 12345678901U);
    EXPECT_EQ(errors.getMainModuleNumber(0), 12U);
    EXPECT_EQ(errors.getSubModuleNumber(0), 13U);
    EXPECT_STREQ(errors.getFunctionName(0), "poll");
    EXPECT_EQ(errors.getLineNumber(0), 14U);
    EXPECT_EQ(errors.getOriginNode(1), 0U);
    EXPECT_EQ(errors.getTimeStamp(1), 0U);
    EXPECT_STREQ(errors.getFunctionName(1), "");
}

TEST(Script, MayRefuseALock)
{
    const SimulatedTarget device(scripted({{"lock", {failing(1, "busy")}}}));
    const Scan scan;
    Session refused;
    EXPECT_EQ(refused.handle, 0U);
    ASSERT_EQ(refused.errors.count(), 1U);
    EXPECT_EQ(refused.errors.text(0), "busy");
    const Session locked;
    EXPECT_NE(locked.handle, 0U);
}

TEST(Script, MayRefuseAStart)
{
    const SimulatedTarget device(scriptedElement({{"start", {failing(1, "not now"), normal}}}));
    const auto file = updateFileFor(device);
    const Scan scan;
    Session session;
    session.start(1, file);
    EXPECT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.text(0), "not now");
    EXPECT_EQ(session.poll(1), (Poll{0, 0, 0}));
    session.start(1, file);
    EXPECT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 9}));
}

TEST(Script, DecidesHowAnUpdateStands)
{
    ordered_json lost = failing(4, "lost");
    const SimulatedTarget device(scriptedElement(
        {{"polls", {{{"status", 1}, {"done", 5}, {"total", 10}}, lost, normal, {{"status", 3}, {"done", 6}}}}}));
    const auto file = updateFileFor(device);
    const Scan scan;
    Session session;
    EXPECT_EQ(session.poll(1), (Poll{0, 0, 0}));
    session.start(1, file);
    EXPECT_EQ(session.poll(1), (Poll{1, 5, 10}));
    EXPECT_EQ(session.errors.count(), 0U);
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 0}));
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.text(0), "lost");
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 0}));
    EXPECT_EQ(session.poll(1), (Poll{3, 6, 0}));
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
    EXPECT_EQ(session.errors.count(), 1U);
}

TEST(Script, GivesAnUpdateItsNewValuesWhenAPollFindsItFinished)
{
    const SimulatedTarget device(scriptedElement({{"polls", {normal, {{"status", 2}}, normal}}}));
    const auto file = updateFileFor(device);
    const Scan scan;
    Session session;
    session.start(1, file);
    session.poll(1);
    EXPECT_EQ(session.poll(1), (Poll{2, 0, 0}));
    session.unlock();
    const ordered_json::json_pointer element("/tree/items/0/items/0/items/0/parameters");
    EXPECT_EQ(device.document()[element]["CHECKSUM_CRC32"], 0xCBF43926U);
}

TEST(Script, LeavesAnElementAsItWasWhenAPollThatFindsItFinishedHasErrors)
{
    ordered_json finished = failing(4, "lost");
    finished["status"] = 2;
    const SimulatedTarget device(scriptedElement({{"polls", {finished}}}));
    const ordered_json before = device.document();
    const auto file = updateFileFor(device);
    const Scan scan;
    Session session;
    session.start(1, file);
    EXPECT_EQ(session.poll(1), (Poll{2, 0, 0}));
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.text(0), "lost");
    session.unlock();
    EXPECT_EQ(device.document(), before);
}

TEST(Script, LeavesAnElementThatDidNotFinishAsItWas)
{
    const SimulatedTarget device(scriptedElement({{"polls", {{{"status", 3}}}}}));
    const ordered_json before = device.document();
    const auto file = updateFileFor(device);
    const Scan scan;
    Session session;
    session.start(1, file);
    EXPECT_EQ(session.poll(1), (Poll{3, 0, 0}));
    session.unlock();
    EXPECT_EQ(device.document(), before);
}

TEST(Script, TakesAnEmptyListOfPollsAsNone)
{
    const SimulatedTarget device(scriptedElement({{"polls", ordered_json::array()}}));
    const auto file = updateFileFor(device);
    const Scan scan;
    Session session;
    session.start(1, file);
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 9}));
}

TEST(Script, GivesWhatAnUpdateHasReported)
{
    ordered_json finish = failing(1, "slow");
    finish["results"] = ordered_json::array({error(5, "verify"), error(6, "again")});
    const SimulatedTarget device(scriptedElement({{"finish", {finish}}}));
    const Scan scan;
    Session session;
    session.collect(1);
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.text(0), "slow");
    ASSERT_EQ(session.results.count(), 2U);
    EXPECT_EQ(session.results.text(0), "verify");
    EXPECT_EQ(session.results.code(1), 6U);
    session.collect(1);
    EXPECT_EQ(session.errors.count() + session.results.count(), 3U);
}

TEST(Script, LetsANodeFinishAndATargetUnlockAllTheSame)
{
    const SimulatedTarget device(scripted({{"updateFinish", {failing(1, "late")}}, {"unlock", {failing(2, "busy")}}}));
    const Scan scan;
    Session session;
    const unsigned handle = session.handle;
    Session::manager().updateFinish(session.errors, session.board, handle, nullptr);
    Session::manager().updateFinish(session.errors, session.board, handle, nullptr);
    session.unlock();
    ASSERT_EQ(session.errors.count(), 2U);
    EXPECT_EQ(session.errors.text(0), "late");
    EXPECT_EQ(session.errors.text(1), "busy");
    const Session next;
    EXPECT_EQ(next.handle, handle + 1);
}

TEST(Script, StartsAnewWithAnotherTarget)
{
    const ordered_json document = scripted({{"scan", {failing(1, "noise")}}});
    for (int device = 0; device < 2; ++device) {
        const SimulatedTarget target(document);
        const Scan first;
        const Scan second;
        EXPECT_EQ(first.errors.count(), 1U);
        EXPECT_EQ(second.errors.count(), 0U);
    }
}

TEST(Script, GoesOnWhereItWasWhenTheTargetChanges)
{
    const SimulatedTarget device(scripted({{"scan", {failing(1, "first"), failing(1, "second")}}}));
    const Scan first;
    std::ofstream(device.path()) << scripted({{"scan", {failing(1, "new first"), failing(1, "new second")}}});
    const Scan second;
    EXPECT_EQ(first.errors.text(0), "first");
    EXPECT_EQ(second.errors.text(0), "new second");
}
