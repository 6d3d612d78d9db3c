// How a started update goes on by the clock.
#include <gtest/gtest.h>

#include "Device.h"
#include "ElementDevice.h"
#include "support/UpdateFiles.h"

TEST(UpdateSession, MakesProgressByTheClock)
{
    const ElementDevice device(oldValues, {{"bytesPerSecond", 3}});
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 9}));
    pass(333333);
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 9}));
    pass(1);
    EXPECT_EQ(session.poll(1), (Poll{1, 1, 9}));
    pass(2'666'665);
    EXPECT_EQ(session.poll(1), (Poll{1, 8, 9}));
    pass(1);
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
    pass(5'000'000);
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
    EXPECT_EQ(session.errors.count(), 0U);
}

TEST(UpdateSession, TransfersAMebibyteInASecondUnlessStatedOtherwise)
{
    const ElementDevice device(oldValues);
    device.write(std::string(2'000'000, 'x'));
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(1'000'000);
    EXPECT_EQ(session.poll(1), (Poll{1, 1048576, 2'000'000}));
}

TEST(UpdateSession, IsNotConfusedByEnormousRates)
{
    const ElementDevice device(oldValues, {{"bytesPerSecond", 18446744073709551615ULL}});
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(4'000'000'000);
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
}

TEST(UpdateSession, FinishesAnEmptyFileAtOnce)
{
    const ElementDevice device(oldValues);
    device.write("");
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1), (Poll{2, 0, 0}));
}

TEST(UpdateSession, CountsTheBytesOfAnyRateAndTime)
{
    const ElementDevice device(oldValues, {{"bytesPerSecond", 9223372036854775808ULL}});
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(2);  // times the rate: 2 to the power of 64
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
}

TEST(UpdateSession, TellsSizesBeyond32BitsAsTheLargestNumber)
{
    const ElementDevice device(oldValues, {{"bytesPerSecond", 4294967296}});
    device.write(UpdateFiles::bitstreamFile(99));  // of which the header alone is read
    std::filesystem::resize_file(device.file(), 5368709120);
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 4294967295}));
    pass(1'000'000);
    EXPECT_EQ(session.poll(1), (Poll{1, 4294967295, 4294967295}));
    pass(1'000'000);
    EXPECT_EQ(session.poll(1), (Poll{2, 4294967295, 4294967295}));
}
