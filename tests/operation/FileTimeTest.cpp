// The time stamp that the target notes for an update file. Where the machine's own time will not do, this program's
// localtime_r() and mktime() stand before those of the C library.
#include <dlfcn.h>

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include "operation/OperationFixture.h"

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

// The zone `names` (as in TZ) with daylight saving in force from 40 days before today until 40 days after, so that it
// is in force now and there is standard time within the year: with neither, the C library has to guess how far apart
// the two are.
std::string withDaylightSavingNow(const char* names)
{
    const std::time_t now = std::time(nullptr);
    std::tm today;
    ::gmtime_r(&now, &today);
    const int first = (today.tm_yday + 365 - 40) % 365 + 1;
    const int last = (today.tm_yday + 40) % 365 + 1;
    return std::string(names) + ",J" + std::to_string(first) + "/0,J" + std::to_string(last) + "/0";
}

bool knowsLocalTime = true;
std::optional<std::time_t> fixedTime;

}  // namespace

extern "C" std::tm* localtime_r(const std::time_t* time, std::tm* local) noexcept
{
    using LocalTime = std::tm*(const std::time_t*, std::tm*);
    static LocalTime* const usual = reinterpret_cast<LocalTime*>(::dlsym(RTLD_NEXT, "localtime_r"));
    return knowsLocalTime ? usual(time, local) : nullptr;
}

extern "C" std::time_t mktime(std::tm* local) noexcept
{
    using MakeTime = std::time_t(std::tm*);
    static MakeTime* const usual = reinterpret_cast<MakeTime*>(::dlsym(RTLD_NEXT, "mktime"));
    return fixedTime ? *fixedTime : usual(local);
}

class FileTime : public OperationFixture {
protected:
    // Updates one element in `zone` and expects a file time `ahead` seconds ahead of the time of the update.
    void expectFileTimeAhead(const std::string& zone, long long ahead)
    {
        const TimeZone here(zone.c_str());
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

TEST_F(FileTime, IsTheTimeOfTheUpdateInUniversalTime)
{
    expectFileTimeAhead("UTC0", 0);
}

TEST_F(FileTime, IsTheTimeOfTheUpdateInAZoneWithoutDaylightSaving)
{
    expectFileTimeAhead("STD-5", 0);
}

TEST_F(FileTime, IsOneHourAheadWhileDaylightSavingIsInForce)
{
    expectFileTimeAhead(withDaylightSavingNow("STD0DST-1"), 3600);
}

TEST_F(FileTime, IsOneHourAheadAlsoFarFromUniversalTime)
{
    expectFileTimeAhead(withDaylightSavingNow("STD8DST7"), 3600);
}

TEST_F(FileTime, IsHalfAnHourAheadWhereDaylightSavingIsHalfAnHour)
{
    expectFileTimeAhead(withDaylightSavingNow("STD-10:30DST-11"), 1800);
}

TEST_F(FileTime, IsZeroWhereTheLocalTimeIsNotKnown)
{
    addElement(1, 1);
    prepare();
    knowsLocalTime = false;
    EXPECT_TRUE(update());
    knowsLocalTime = true;

    ASSERT_EQ(calls("update2").size(), 1u);
    EXPECT_EQ(calls("update2")[0].at("fileTime"), 0u);
}

TEST_F(FileTime, IsExtendedTo64BitsWithItsSign)
{
    addElement(1, 1);
    prepare();
    fixedTime = -2;
    EXPECT_TRUE(update());
    fixedTime.reset();

    ASSERT_EQ(calls("update2").size(), 1u);
    EXPECT_EQ(calls("update2")[0].at("fileTime"), 18446744073709551614u);
}
