#include <gtest/gtest.h>

#include <cstdlib>

#include "TraceFile.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"

namespace {

const char* const texts[] = {"Plain text", "Update: %1...", "%2 before %1, %3 and 100%", nullptr};
const ZoResText table{texts, "test", 3, 0x12340000};

// Registers the table for its own lifetime, as a library does.
class Registration {
public:
    Registration() { ZoCErrorManager::_registerMessages(table); }
    ~Registration() { ZoCErrorManager::_unregisterMessages(table); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
};

class Messages : public ::testing::Test {
protected:
    // The text of the only message in the trace.
    std::string tracedText() const
    {
        const std::string line = trace.text();
        const std::string start = "\"text\":\"";
        const std::size_t from = line.find(start) + start.size();
        return line.substr(from, line.rfind('"') - from);
    }

    Registration registration;
    ZoCErrorManager& manager = *ZoCErrorManager::getSingleton();
    TraceFile trace;  // begins after the table is registered
};

}  // namespace

TEST_F(Messages, OfALogGoNowhereButIntoTheTrace)
{
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    manager.sendLog(0x12340001, 504, "startUpdatesOfPhase", "%s", "X");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(trace.text(),
              "{\"call\":\"sendLog\",\"code\":305397761,\"line\":504,\"function\":\"startUpdatesOfPhase\","
              "\"text\":\"Update: X...\"}\n");
}

TEST_F(Messages, OfAWarningGoToStandardErrorAndIntoTheTrace)
{
    ::testing::internal::CaptureStderr();
    ::testing::internal::CaptureStdout();
    manager.sendWarning(0x12340000, 268, "run");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "WARNING 0x12340000: Plain text\n");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(
        trace.text(),
        "{\"call\":\"sendWarning\",\"code\":305397760,\"line\":268,\"function\":\"run\",\"text\":\"Plain text\"}\n");
}

TEST_F(Messages, HaveTheirNumbersReplacedByTheArguments)
{
    manager.sendLog(0x12340002, 1, "f", "%s%s%s", "first", "second", "%1");
    EXPECT_EQ(tracedText(), "second before first, %1 and 100%");
}

TEST_F(Messages, KeepANumberThatHasNoArgument)
{
    manager.sendLog(0x12340002, 1, "f", "%s", "first");
    EXPECT_EQ(tracedText(), "%2 before first, %3 and 100%");
}

TEST_F(Messages, TakeArgumentsOfEveryKind)
{
    manager.sendLog(1, 1, "f", "%s %d %i %u %x %c", "text", -5, 6, 4000000000u, 0xBEEFu, '!');
    EXPECT_EQ(tracedText(), "text -5 6 4000000000 beef !");
}

TEST_F(Messages, WriteZeroAsOneHexadecimalDigit)
{
    manager.sendLog(1, 1, "f", "%x", 0u);
    EXPECT_EQ(tracedText(), "0");
}

TEST_F(Messages, TakeNoArgumentForADoubledPercentSign)
{
    manager.sendLog(0x12340001, 1, "f", "%%%s", "X");
    EXPECT_EQ(tracedText(), "Update: X...");
}

TEST_F(Messages, TakeNoArgumentBehindAConversionThatTheyDoNotKnow)
{
    manager.sendLog(1, 1, "f", "%s %p %s", "first", static_cast<void*>(nullptr), "third");
    EXPECT_EQ(tracedText(), "first");
}

TEST_F(Messages, NameATextThatIsNone)
{
    manager.sendLog(1, 1, "f", "%s", std::getenv("TRELLAN_NO_SUCH_VARIABLE"));
    EXPECT_EQ(tracedText(), "(null)");
}

TEST_F(Messages, HaveNumbersUpToTheFirstOtherCharacterReplaced)
{
    static const char* const others[] = {"%1st %12 %1: %0 %", nullptr};
    static const ZoResText otherTable{others, "test", 0, 0x12350000};
    ZoCErrorManager::_registerMessages(otherTable);
    manager.sendLog(0x12350000, 1, "f", "%s", "X");
    ZoCErrorManager::_unregisterMessages(otherTable);
    const std::string traced = trace.text();
    EXPECT_NE(traced.find(R"("text":"Xst %12 X: %0 %")"), std::string::npos) << traced;
}

TEST_F(Messages, WithoutARegisteredTextAreTheirArguments)
{
    manager.sendLog(0x12340004, 1, "f", "%s,%u", "X", 3u);
    EXPECT_EQ(tracedText(), "X 3");
}

TEST_F(Messages, WithANullTextAreTheirArguments)
{
    manager.sendLog(0x12340003, 1, "f", "%s", "X");
    EXPECT_EQ(tracedText(), "X");
}

TEST_F(Messages, OfOtherCodesHaveNoText)
{
    manager.sendLog(0x1233FFFF, 1, "f", nullptr);
    EXPECT_EQ(tracedText(), "");
}

TEST_F(Messages, MayComeFromAnUnnamedFunction)
{
    manager.sendLog(0x12340000, 0, nullptr, nullptr);
    EXPECT_EQ(trace.text(),
              "{\"call\":\"sendLog\",\"code\":305397760,\"line\":0,\"function\":\"\",\"text\":\"Plain text\"}\n");
}

TEST_F(Messages, OfThisKindHaveNoTextAfterTheirTableIsUnregistered)
{
    ZoCErrorManager::_unregisterMessages(table);
    manager.sendLog(0x12340001, 1, "f", "%s", "X");
    EXPECT_EQ(trace.text(),
              "{\"call\":\"unregisterMessages\",\"code\":305397760}\n"
              "{\"call\":\"sendLog\",\"code\":305397761,\"line\":1,\"function\":\"f\",\"text\":\"X\"}\n");
    ZoCErrorManager::_registerMessages(table);
}

TEST_F(Messages, AreTracedAsRegisteredWithTheNextCallWhereNoTargetIsNamed)
{
    const Registration second;
    EXPECT_EQ(trace.text(), "");
    manager.sendLog(0x12340000, 0, "f", nullptr);
    EXPECT_EQ(trace.text(),
              "{\"call\":\"registerMessages\",\"code\":305397760}\n"
              "{\"call\":\"sendLog\",\"code\":305397760,\"line\":0,\"function\":\"f\",\"text\":\"Plain text\"}\n");
}

TEST_F(Messages, AreTracedAsRegisteredAtOnceWhereATargetIsNamed)
{
    ::setenv("TRELLAN_TARGET", "/nowhere/target.json", 1);
    const Registration second;
    ::unsetenv("TRELLAN_TARGET");
    EXPECT_EQ(trace.text(), "{\"call\":\"registerMessages\",\"code\":305397760}\n");
}

TEST_F(Messages, ComeFromTheTableRegisteredLast)
{
    const char* const newerTexts[] = {"Newer text"};
    const ZoResText newer{newerTexts, "", 0, 0x12340000};
    ZoCErrorManager::_registerMessages(newer);
    ::testing::internal::CaptureStderr();
    manager.sendWarning(0x12340000, 1, "f");
    ZoCErrorManager::_unregisterMessages(newer);
    manager.sendWarning(0x12340000, 1, "f");
    EXPECT_EQ(::testing::internal::GetCapturedStderr(),
              "WARNING 0x12340000: Newer text\n"
              "WARNING 0x12340000: Plain text\n");
}

TEST_F(Messages, HaveTheirTablesCounted)
{
    const int before = TrellanSimulation::resources().messageTables;
    const ZoResText another{texts, "", 0, 0x20000000};
    ZoCErrorManager::_registerMessages(another);
    EXPECT_EQ(TrellanSimulation::resources().messageTables, before + 1);
    ZoCErrorManager::_unregisterMessages(another);
    EXPECT_EQ(TrellanSimulation::resources().messageTables, before);
    ZoCErrorManager::_unregisterMessages(another);
    EXPECT_EQ(TrellanSimulation::resources().messageTables, before);
}

TEST(MessageTable, CanBeUnregisteredWhileTheProcessEnds)
{
    const TraceFile trace;
    EXPECT_EXIT(
        {
            static const Registration registration;
            ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(trace.text(),
              "{\"call\":\"registerMessages\",\"code\":305397760}\n"
              "{\"call\":\"unregisterMessages\",\"code\":305397760}\n");
}
