// The time stamp that the target notes for an update file.
#include <cstdlib>
#include <ctime>

#include "operation/OperationTest.h"

namespace {

// Sets the time zone for the time of a scope.
class TimeZone {
public:
    explicit TimeZone(const char* zone)
    {
        if (const char* value = std::getenv("TZ")) {
            before = value;
        }
        ::setenv("TZ", zone, 1);
        ::tzset();
    }
    ~TimeZone()
    {
        if (before) {
            ::setenv("TZ", before->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
        ::tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    std::optional<std::string> before;
};

}  // namespace

class FileTimeTest : public OperationTest {
protected:
    // Updates one element in `zone` and expects a file time `ahead` seconds ahead of the time of the update.
    void expectFileTimeAhead(const char* zone, long long ahead)
    {
        const TimeZone here(zone);
        addElement(1, 1);
        prepare();
        const long long before = std::time(nullptr);
        ASSERT_TRUE(update());
        const long long after = std::time(nullptr);

        ASSERT_EQ(calls("update2").size(), 1u);
        const long long fileTime = calls("update2")[0].at("fileTime");
        EXPECT_GE(fileTime, before + ahead);
        EXPECT_LE(fileTime, after + ahead);
    }
};

TEST_F(FileTimeTest, IsTheTimeOfTheUpdateInUniversalTime)
{
    expectFileTimeAhead("UTC0", 0);
}

TEST_F(FileTimeTest, IsTheTimeOfTheUpdateInAZoneWithoutDaylightSaving)
{
    expectFileTimeAhead("STD-5", 0);
}

TEST_F(FileTimeTest, IsOneHourAheadWhileDaylightSavingIsInForce)
{
    expectFileTimeAhead("STD0DST,0/0,J365/25", 3600);
}

TEST_F(FileTimeTest, IsOneHourAheadAlsoFarFromUniversalTime)
{
    expectFileTimeAhead("STD8DST,0/0,J365/25", 3600);
}

TEST_F(FileTimeTest, IsHalfAnHourAheadWhereDaylightSavingIsHalfAnHour)
{
    expectFileTimeAhead("STD-10:30DST-11,0/0,J365/25", 1800);
}
