// A target file that another program changes while the target is locked.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Device.h"
#include "ElementDevice.h"
#include "simulation/base/Clock.h"

namespace {

constexpr const char* edited = R"({"tree": {"id": "ROOT"}})";

void finishElement(const ElementDevice& device, Session& session)
{
    session.start(1, device.file());
    pass(10'000'000);
    EXPECT_EQ(session.poll(1).status, 2U);
}

void expectRefusal(const ElementDevice& device, Session& session)
{
    session.unlock();
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300007U);
    EXPECT_EQ(session.errors.text(0),
              "The target file " + device.target.path().string() +
                  " cannot be read: it cannot be written: another program has changed it meanwhile.");
}

}  // namespace

TEST(EditedTarget, KeepsTheEditAndTheUnlockReportsIt)
{
    const ElementDevice device(oldValues);
    const Scan scan;
    Session session;
    finishElement(device, session);
    writeText(device.target.path(), edited);
    expectRefusal(device, session);
    EXPECT_EQ(device.text(), edited);
}

TEST(EditedTarget, IsNoticedWhenAnotherFileOfTheSameSizeAndTimeHasTakenItsPlace)
{
    const ElementDevice device(oldValues);
    const Scan scan;
    Session session;
    finishElement(device, session);
    std::string text = device.text();
    text.replace(text.find("1.0"), 3, "2.0");
    const auto another = device.target.folder() / "another.json";
    writeText(another, text);
    std::filesystem::last_write_time(another, std::filesystem::last_write_time(device.target.path()));
    std::filesystem::rename(another, device.target.path());
    expectRefusal(device, session);
    EXPECT_EQ(device.text(), text);
}

TEST(EditedTarget, MayBeNoticedAfterElementsWereWritten)
{
    const ElementDevice device(oldValues, {{"clock", "real"}});
    device.write("");
    {
        const Scan scan;
        Session session;
        session.start(1, device.file());
        session.poll(1);
        pass(1);
        EXPECT_EQ(device.element()["VALID"], 1);
        device.write("1");
        session.start(1, device.file());
        pass(10);
        EXPECT_EQ(session.poll(1).status, 2U);
        writeText(device.target.path(), edited);
        pass(1);
        EXPECT_EQ(device.text(), edited);
        expectRefusal(device, session);
        EXPECT_EQ(device.text(), edited);
    }
    TrellanSimulation::useClock(TrellanSimulation::ClockKind::real);
}

// Nothing of its own would be lost with it.
TEST(EditedTarget, IsLeftAloneWhenNoElementHasChanged)
{
    const ElementDevice device(oldValues);
    const Scan scan;
    Session session;
    writeText(device.target.path(), edited);
    session.unlock();
    EXPECT_EQ(session.errors.count(), 0U);
    EXPECT_EQ(device.text(), edited);
}

TEST(EditedTarget, IsNotOneThatOnlyGotOtherRights)
{
    const ElementDevice device(oldValues);
    const Scan scan;
    Session session;
    finishElement(device, session);
    ASSERT_EQ(::chmod(device.target.path().c_str(), 0600), 0);
    session.unlock();
    EXPECT_EQ(session.errors.count(), 0U);
    EXPECT_EQ(device.element()["VALID"], 1);
}
