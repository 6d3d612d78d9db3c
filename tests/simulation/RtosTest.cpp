#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "OpenFile.h"
#include "TraceFile.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "simulation/base/Clock.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

using TrellanSimulation::ClockKind;

namespace {

// An open file with buffered data.
class Flushing : public ::testing::Test {
protected:
    Flushing() { std::fputs("buffered", file.get()); }
    ~Flushing() override { TrellanSimulation::useClock(ClockKind::real); }

    TempDir directory;
    std::string path = directory.path() / "file";
    OpenFile file{std::fopen(path.c_str(), "wb")};
};

}  // namespace

TEST_F(Flushing, OfAFileWritesWhatIsBuffered)
{
    EXPECT_EQ(readText(path), "");
    EXPECT_EQ(ZoNRtosAbstraction::syncFileSystem(file.get(), 500), 0);
    EXPECT_EQ(readText(path), "buffered");
}

TEST_F(Flushing, OfAllFilesWritesWhatIsBuffered)
{
    TrellanSimulation::useClock(ClockKind::real);
    ZoNRtosAbstraction::syncFileSystem(nullptr, 0);  // whether the whole machine was flushed in time is its own affair
    EXPECT_EQ(readText(path), "buffered");
}

TEST_F(Flushing, OfAllFilesWritesWhatIsBufferedInVirtualTime)
{
    TrellanSimulation::useClock(ClockKind::virtualTime);
    EXPECT_EQ(ZoNRtosAbstraction::syncFileSystem(nullptr, 500), 0);
    EXPECT_EQ(readText(path), "buffered");
}

TEST_F(Flushing, TakesNoVirtualTime)
{
    TrellanSimulation::useClock(ClockKind::virtualTime);
    const std::uint64_t before = TrellanSimulation::now();
    ZoNRtosAbstraction::syncFileSystem(nullptr, 500);
    EXPECT_EQ(TrellanSimulation::now(), before);
}

TEST_F(Flushing, LeavesNoProcessBehindThatIsToBeCollected)
{
    TrellanSimulation::useClock(ClockKind::real);
    const auto flush = [] {
        prctl(PR_SET_CHILD_SUBREAPER, 0);  // orphans go to somebody else, whatever this process was
        ZoNRtosAbstraction::syncFileSystem(nullptr, 0);
        errno = 0;
        std::_Exit(waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? 0 : 1);
    };
    EXPECT_EXIT(flush(), testing::ExitedWithCode(0), "");
}

TEST_F(Flushing, OfAFileOnAFullMediumFails)
{
    const TraceFile trace;
    const OpenFile full(std::fopen("/dev/full", "wb"));
    ASSERT_NE(full, nullptr);
    std::fputs("buffered", full.get());
    EXPECT_NE(ZoNRtosAbstraction::syncFileSystem(full.get(), 500), 0);
    EXPECT_EQ(trace.text(), "{\"call\":\"syncFileSystem\",\"timeout\":500,\"result\":-1}\n");
}

TEST_F(Flushing, IsTraced)
{
    const TraceFile trace;
    TrellanSimulation::useClock(ClockKind::virtualTime);
    ZoNRtosAbstraction::syncFileSystem(nullptr, 500);
    ZoNRtosAbstraction::syncFileSystem(file.get(), 20);
    EXPECT_EQ(trace.text(),
              "{\"call\":\"syncFileSystem\",\"timeout\":500,\"result\":0}\n"
              "{\"call\":\"syncFileSystem\",\"timeout\":20,\"result\":0}\n");
}

TEST(Sleeping, IsTraced)
{
    const TraceFile trace;
    TrellanSimulation::useClock(ClockKind::virtualTime);
    ZoNRtosAbstraction::usleep(200000);
    TrellanSimulation::useClock(ClockKind::real);
    EXPECT_EQ(trace.text(), "{\"call\":\"usleep\",\"microseconds\":200000}\n");
}
