// The end of a process that a signal reaches before there is anything to finish.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "tool/update/ImmediateEnd.h"
#include "tool/update/StopSignals.h"

using TrellanTool::ImmediateEnd;
using TrellanTool::LastWords;

namespace {

class ImmediateEnds : public testing::Test {
protected:
    ImmediateEnds()
    {
        for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
            std::signal(signal, SIG_DFL);
        }
    }
};

LastWords wordsFor(int signal)
{
    return {std::string("ended by ") + TrellanTool::signalName(signal) + "\n", ""};
}

void endBy(int signal)
{
    const ImmediateEnd immediate(TrellanTool::stopSignals(), wordsFor);
    ::kill(::getpid(), signal);
}

}  // namespace

TEST_F(ImmediateEnds, TellsTheSignalAndEndsWith128AndItsNumber)
{
    EXPECT_EXIT(endBy(SIGHUP), testing::ExitedWithCode(129), "^ended by SIGHUP\n$");
    EXPECT_EXIT(endBy(SIGINT), testing::ExitedWithCode(130), "^ended by SIGINT\n$");
    EXPECT_EXIT(endBy(SIGTERM), testing::ExitedWithCode(143), "^ended by SIGTERM\n$");
}

TEST_F(ImmediateEnds, WritesItsDocumentToStandardOutput)
{
    const auto end = [] {
        ::dup2(STDERR_FILENO, STDOUT_FILENO);
        const ImmediateEnd immediate({SIGINT}, [](int) { return LastWords{"", "{}\n"}; });
        ::kill(::getpid(), SIGINT);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(130), "^\\{\\}\n$");
}

TEST_F(ImmediateEnds, IsReachedWithoutATerminalToTellItTo)
{
    const auto end = [] {
        ::close(STDERR_FILENO);
        endBy(SIGHUP);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(129), "");
}

TEST_F(ImmediateEnds, LeavesAnIgnoredSignalIgnored)
{
    const auto end = [] {
        std::signal(SIGHUP, SIG_IGN);
        endBy(SIGHUP);
        ::_exit(7);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(7), "");
}

TEST_F(ImmediateEnds, IsOverAtTheEndOfItsScope)
{
    const auto end = [] {
        {
            const ImmediateEnd immediate(TrellanTool::stopSignals(), wordsFor);
        }
        ::kill(::getpid(), SIGINT);
    };
    EXPECT_EXIT(end(), testing::KilledBySignal(SIGINT), "");
}

TEST_F(ImmediateEnds, PutsNothingBackThatWasChangedMeanwhile)
{
    const auto end = [] {
        {
            const ImmediateEnd immediate(TrellanTool::stopSignals(), wordsFor);
            TrellanTool::ignoreSignals({SIGINT});
        }
        ::kill(::getpid(), SIGINT);
        ::_exit(7);
    };
    EXPECT_EXIT(end(), testing::ExitedWithCode(7), "");
}
