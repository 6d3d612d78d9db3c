// The library's message texts, known to the error manager from loading on.
#include <gtest/gtest.h>

#include <string>

#include "Updating.h"
#include "simulation/base/Resources.h"

class MessageTable : public Updating {
protected:
    SimulatedTarget device{processorTarget()};
};

TEST_F(MessageTable, IsRegisteredOnceByLoading)
{
    EXPECT_EQ(TrellanSimulation::resources().messageTables, 1);
}

TEST_F(MessageTable, FirstTextNamesWhatIsUpdated)
{
    ZoCErrorManager::getSingleton()->sendLog(0x26500000, 12, "someFunction", "%s", "Processor board, Firmware");
    const auto calls = callsOf("sendLog", device.trace());
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].at("code"), 0x26500000);
    EXPECT_EQ(calls[0].at("text"), "Firmware update: Processor board, Firmware...");
}

TEST_F(MessageTable, SecondTextAsksToRebootAndRepeatTheUpdate)
{
    testing::internal::CaptureStderr();
    ZoCErrorManager::getSingleton()->sendWarning(0x26500001, 12, "someFunction");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "WARNING 0x26500001: The firmware archive contains additional elements, which are not supported by the "
              "previous firmware version. Reboot the device to activate the new firmware. Then repeat the update to "
              "check if additional elements need to be updated.\n");
}

TEST_F(MessageTable, HasNoThirdText)
{
    testing::internal::CaptureStderr();
    ZoCErrorManager::getSingleton()->sendWarning(0x26500002, 12, "someFunction");
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_EQ(text.find("firmware"), std::string::npos) << text;
}
