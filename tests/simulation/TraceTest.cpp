#include <gtest/gtest.h>
#include <sys/stat.h>

#include "TraceFile.h"
#include "simulation/base/Trace.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"

using TrellanSimulation::trace;

namespace {

// What tracing two calls to the file `name` prints to standard error.
std::string faultsOf(const std::string& name)
{
    const TraceFile another;
    trace({{"call", "scan"}});  // so that nothing was told of `name` before
    setenv("TRELLAN_TRACE", name.c_str(), 1);
    testing::internal::CaptureStderr();
    trace({{"call", "lock"}});
    trace({{"call", "unlock"}});
    return testing::internal::GetCapturedStderr();
}

}  // namespace

TEST(Trace, HasALineForEachRecord)
{
    const TraceFile file;
    trace({{"call", "scan"}, {"argument", true}});
    trace({{"call", "unlock"}, {"handle", 1}, {"errors", 2}});
    EXPECT_EQ(file.text(), "{\"call\":\"scan\",\"argument\":true}\n{\"call\":\"unlock\",\"handle\":1,\"errors\":2}\n");
}

TEST(Trace, IsNotWrittenWhileNoFileIsNamed)
{
    const TraceFile file;
    unsetenv("TRELLAN_TRACE");
    trace({{"call", "scan"}});
    setenv("TRELLAN_TRACE", "", 1);
    trace({{"call", "scan"}});
    EXPECT_EQ(file.text(), "");
}

TEST(Trace, GoesToTheFileThatIsNamedAtTheMoment)
{
    const TraceFile first;
    trace({{"call", "lock"}});
    const TraceFile second;
    trace({{"call", "unlock"}});
    EXPECT_EQ(first.text(), "{\"call\":\"lock\"}\n");
    EXPECT_EQ(second.text(), "{\"call\":\"unlock\"}\n");
}

TEST(Trace, AddsToWhatTheFileHolds)
{
    const TraceFile file;
    std::ofstream(file.path()) << "earlier\n";
    trace({{"call", "lock"}});
    EXPECT_EQ(file.text(), "earlier\n{\"call\":\"lock\"}\n");
}

TEST(Trace, KeepsEachRecordOnOneLine)
{
    const TraceFile file;
    trace({{"text", "two\nlines"}});
    EXPECT_EQ(file.text(), "{\"text\":\"two\\nlines\"}\n");
}

TEST(Trace, ReplacesBytesThatAreNoText)
{
    const TraceFile file;
    trace({{"text",
            "a\xFF"
            "b"}});
    EXPECT_EQ(file.text(),
              "{\"text\":\"a\xEF\xBF\xBD"
              "b\"}\n");
}

TEST(Trace, DoesNotDisturbWhenItCannotBeWritten)
{
    const TraceFile file;
    setenv("TRELLAN_TRACE", "/nowhere/at/all", 1);
    testing::internal::CaptureStderr();
    EXPECT_NO_THROW(trace({{"call", "lock"}}));
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(file.text(), "");
}

TEST(Trace, TellsOnceThatItCannotBeWritten)
{
    EXPECT_EQ(faultsOf("/nowhere/at/all"),
              "WARNING: cannot write the trace /nowhere/at/all: No such file or directory\n");
    EXPECT_EQ(faultsOf("/nowhere/else"), "WARNING: cannot write the trace /nowhere/else: No such file or directory\n");
}

TEST(Trace, TellsThatTheMediumIsFull)
{
    EXPECT_EQ(faultsOf("/dev/full"), "WARNING: cannot write the trace /dev/full: No space left on device\n");
}

TEST(Trace, DoesNotWaitForTheReaderOfAPipe)
{
    const TempDir folder;
    const std::string pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(faultsOf(pipe), "WARNING: cannot write the trace " + pipe + ": No such device or address\n");
}

TEST(Trace, GoesOnInANewFileWhenItsOwnIsRemoved)
{
    const TraceFile file;
    trace({{"call", "lock"}});
    std::filesystem::remove(file.path());
    trace({{"call", "unlock"}});
    EXPECT_EQ(file.text(), "{\"call\":\"unlock\"}\n");
}

TEST(Trace, OpensItsFileBeforeTheFirstRecord)
{
    const TraceFile file;
    TrellanSimulation::openTrace();
    const std::string moved = file.path() + ".moved";
    std::filesystem::rename(file.path(), moved);
    trace({{"call", "lock"}});
    EXPECT_EQ(file.text(), "");
    EXPECT_EQ(readText(moved), "{\"call\":\"lock\"}\n");
}

TEST(Trace, IsNeverWrittenIntoTheTargetFile)
{
    const SimulatedTarget device(target({}));
    const std::string before = readText(device.path());
    const std::filesystem::path link = device.folder() / "link";
    const std::filesystem::path second = device.folder() / "second";
    std::filesystem::create_symlink(device.path(), link);
    std::filesystem::create_hard_link(device.path(), second);
    for (const std::string name : {device.path(), link, second, device.folder() / "." / "target.json"}) {
        EXPECT_EQ(faultsOf(name), "WARNING: cannot write the trace " + name + ": it is the target file\n");
        EXPECT_EQ(readText(device.path()), before);
    }
    std::filesystem::remove(second);
    std::filesystem::remove(device.path());
    faultsOf(device.path());
    EXPECT_FALSE(std::filesystem::exists(device.path()));
}

TEST(Trace, IsNotWrittenIntoAFileThatIsNamedAsTheTargetLater)
{
    const SimulatedTarget device(target({}));
    const std::string path = device.folder() / "later";
    ::setenv("TRELLAN_TRACE", path.c_str(), 1);
    trace({{"call", "scan"}});
    ::setenv("TRELLAN_TARGET", path.c_str(), 1);
    testing::internal::CaptureStderr();
    trace({{"call", "lock"}});
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "WARNING: cannot write the trace " + path + ": it is the target file\n");
    EXPECT_EQ(readText(path), "{\"call\":\"scan\"}\n");
}
