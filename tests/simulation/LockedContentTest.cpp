// Which content of the target file an update works on: that of the lock, read again only where it may have changed.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "Device.h"
#include "ElementDevice.h"
#include "FileEvents.h"
#include "TimeOfDay.h"

namespace {

// A device whose element has version 1.0.
class LockedContent : public testing::Test {
protected:
    // Changes the version in the target file's bytes, which stay as many.
    void writeInPlace(const std::string& version) const
    {
        const std::string text = device.text();
        const auto at = text.find("\"VERSION\": \"") + 12;
        const int file = ::open(device.target.path().c_str(), O_WRONLY | O_CLOEXEC);
        EXPECT_EQ(::pwrite(file, version.data(), version.size(), static_cast<off_t>(at)), 3);
        ::close(file);
    }

    // The version in the target file after an update that leaves it alone.
    std::string versionAfterUpdate() const
    {
        Session session;
        session.start(1, device.file());
        pass(10'000'000);
        EXPECT_EQ(session.poll(1).status, 2U);
        session.unlock();
        EXPECT_EQ(session.errors.count(), 0U);
        EXPECT_EQ(device.element()["CHECKSUM_CRC32"], 3421780262);
        return device.element()["VERSION"];
    }

    ElementDevice device{oldValues};
};

// The machine's time stamps are minutes old, so that every later change has another one.
class LockedContentOfAnOldFile : public LockedContent {
    LaterTimeOfDay later{600};
};

}  // namespace

TEST_F(LockedContentOfAnOldFile, IsThatOfTheScanWithoutReadingAgain)
{
    const Scan scan;
    const FileEvents reading(device.target.path(), IN_OPEN | IN_ACCESS);
    EXPECT_EQ(versionAfterUpdate(), "1.0");
    EXPECT_EQ(reading.count(), 0);
}

TEST_F(LockedContentOfAnOldFile, IsReadAgainWhenAnotherFileHasTakenItsPlace)
{
    const Scan scan;
    writeText(device.target.path().string() + ".new", device.text());
    std::filesystem::rename(device.target.path().string() + ".new", device.target.path());
    writeInPlace("2.0");
    EXPECT_EQ(versionAfterUpdate(), "2.0");
}

TEST_F(LockedContentOfAnOldFile, IsReadAgainWhenAsManyBytesWereWrittenAndTheFilesTimeSetBack)
{
    struct stat before = {};
    ASSERT_EQ(::stat(device.target.path().c_str(), &before), 0);
    const Scan scan;
    writeInPlace("2.0");
    const timespec times[] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(::utimensat(AT_FDCWD, device.target.path().c_str(), times, 0), 0);
    EXPECT_EQ(versionAfterUpdate(), "2.0");
}

// A change within the step in which the file system counts time has the same time stamp as the one before it.
TEST_F(LockedContent, IsThatOfAChangeOfTheSameMoment)
{
    for (int round = 0; round < 50; ++round) {
        writeInPlace("1.0");
        const Scan scan;
        writeInPlace("2.0");
        ASSERT_EQ(versionAfterUpdate(), "2.0");
        writeInPlace("1.0");
    }
}

TEST_F(LockedContent, IsReadAgainAfterAnUpdateOfAnotherSession)
{
    const LaterTimeOfDay later(600);
    const Scan scan;
    EXPECT_EQ(versionAfterUpdate(), "1.0");
    writeInPlace("2.0");
    EXPECT_EQ(versionAfterUpdate(), "2.0");
}
