#include <gtest/gtest.h>

#include "TraceFile.h"
#include "simulation/base/Trace.h"

using TrellanSimulation::trace;

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
    EXPECT_NO_THROW(trace({{"call", "lock"}}));
    EXPECT_EQ(file.text(), "");
}
