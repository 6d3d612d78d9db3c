// When a device with a real clock has its new values in the target file.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include "Device.h"
#include "ElementDevice.h"
#include "FileEvents.h"
#include "simulation/base/Clock.h"

using nlohmann::ordered_json;

namespace {

constexpr const char* newValues = R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":0})";

// A device on a real clock, with two elements that finish at once: their file is empty.
class RealClockWriting : public testing::Test {
protected:
    RealClockWriting()
    {
        device.write("");
        ordered_json document = device.target.document();
        document[elementPointer.parent_pointer().parent_pointer()].push_back(
            item("UPDATE_ELEMENT[2]", {{"VERSION", "1.0"}, {"ID", 2}, {"VALID", 0}}));
        writeText(device.target.path(), document.dump());
    }
    ~RealClockWriting() override { TrellanSimulation::useClock(TrellanSimulation::ClockKind::real); }

    ElementDevice device{oldValues, {{"clock", "real"}}};
};

}  // namespace

TEST_F(RealClockWriting, IsDoneBeforeTheNextSleepReturns)
{
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1).status, 2U);
    pass(1);
    EXPECT_EQ(device.element().dump(), newValues);
}

TEST_F(RealClockWriting, IsDoneOnceForTheElementsOfAPass)
{
    const Scan scan;
    Session session;
    session.start(1, device.file());
    session.start(2, device.file());
    const FileEvents newFiles(device.target.folder(), IN_CREATE);
    session.poll(1);
    session.poll(2);
    pass(1);
    EXPECT_EQ(newFiles.count(), 1);
    EXPECT_EQ(device.element()["VALID"], 1);
    EXPECT_EQ(device.target.document()[elementPointer.parent_pointer().parent_pointer()][1]["parameters"]["VALID"], 1);
    session.poll(1);
    pass(1);
    session.unlock();
    EXPECT_EQ(newFiles.count(), 0);
    EXPECT_EQ(session.errors.count(), 0U);
}

TEST_F(RealClockWriting, IsDoneAtTheUnlockWhereNoSleepCameBetween)
{
    const Scan scan;
    Session session;
    session.start(1, device.file());
    session.poll(1);
    const FileEvents newFiles(device.target.folder(), IN_CREATE);
    session.unlock();
    EXPECT_EQ(newFiles.count(), 1);
    EXPECT_EQ(device.element().dump(), newValues);
    pass(1);
    EXPECT_EQ(newFiles.count(), 0);
}

TEST_F(RealClockWriting, LeavesTheDeviceAsFarAsItHadComeWhenItsProcessIsKilled)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const Scan scan;
        Session session;
        session.start(1, device.file());
        session.poll(1);
        pass(1);
        ::raise(SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(device.element().dump(), newValues);
}

TEST_F(RealClockWriting, IsTriedAgainUntilItSucceeds)
{
    const Scan scan;
    Session session;
    session.start(1, device.file());
    session.poll(1);
    const std::string moved = device.target.path().string() + ".moved";
    std::filesystem::rename(device.target.path(), moved);
    pass(1);
    std::filesystem::rename(moved, device.target.path());
    EXPECT_EQ(device.element()["VALID"], 0);
    pass(1);
    EXPECT_EQ(device.element().dump(), newValues);
    session.unlock();
    EXPECT_EQ(session.errors.count(), 0U);
}

TEST_F(RealClockWriting, IsReportedByTheUnlockWhenItFails)
{
    const Scan scan;
    Session session;
    session.start(1, device.file());
    session.poll(1);
    std::filesystem::remove(device.target.path());
    pass(1);
    EXPECT_EQ(session.errors.count(), 0U);
    session.unlock();
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300007U);
    const std::string path = device.target.path();
    EXPECT_EQ(session.errors.text(0), "The target file " + path + " cannot be read: it cannot be written: stat " +
                                          path + ": No such file or directory.");
}
