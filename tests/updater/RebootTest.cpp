// Reboot: the messages of the reboot-support states, and the refusal.
#include <gtest/gtest.h>

#include <string>

#include "Updating.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

const std::string refusal = "ERROR: Device cannot be rebooted (currently not supported for local access).\n";

const std::string wrongSequence = "ERROR: Device cannot be rebooted automatically (wrong command sequence).\n";

class Reboot : public Updating {
protected:
    // Expects `state` with `message` from the check, and `rebootMessage` from the reboot, after the inventory of
    // `document` was read.
    static void expectState(const ordered_json& document, unsigned state, const std::string& message,
                            const std::string& rebootMessage)
    {
        const SimulatedTarget device(document);
        ZoCTrellanUpdater updater(optionsFor(READ_INVENTORY));
        MessageCapture capture(updater);
        ASSERT_EQ(updater.apply(), 0u);
        expectState(updater, capture, state, message, rebootMessage);
    }

    static void expectState(ZoCTrellanUpdater& updater, MessageCapture& capture, unsigned expected,
                            const std::string& message, const std::string& rebootMessage)
    {
        capture.clear();
        unsigned state = 99;
        EXPECT_EQ(updater.checkRebootSupport(state), expected == 0);
        EXPECT_EQ(state, expected);
        EXPECT_EQ(capture.text(), message);
        capture.clear();
        EXPECT_FALSE(updater.reboot());
        EXPECT_EQ(capture.text(), rebootMessage);
    }

    static ordered_json targetWithFirmware(const std::string& version)
    {
        return target({processorBoard({updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", version}})})});
    }
};

// An updater whose support check gives a fixed answer and prints nothing.
class FixedAnswer : public ZoCTrellanUpdater {
public:
    FixedAnswer(bool answer, unsigned state) : ZoCTrellanUpdater(optionsFor(0)), answer(answer), state(state) {}

    bool checkRebootSupport(unsigned& result) override
    {
        result = state;
        return answer;
    }

private:
    bool answer;
    unsigned state;
};

}  // namespace

TEST_F(Reboot, IsAWrongSequenceBeforeTheInventoryWasRead)
{
    ZoCTrellanUpdater updater(optionsFor(READ_INVENTORY));
    MessageCapture capture(updater);
    expectState(updater, capture, 1, wrongSequence, wrongSequence);
}

TEST_F(Reboot, IsAWrongSequenceAfterACommandThatReadsNoInventory)
{
    const SimulatedTarget device(targetWithFirmware("23.2"));
    ZoCTrellanUpdater updater(optionsFor(TOOL_VERSION));
    MessageCapture capture(updater);
    ASSERT_EQ(updater.apply(), 0u);
    expectState(updater, capture, 1, wrongSequence, wrongSequence);
}

TEST_F(Reboot, IsRefusedEvenWhereTheDeviceSupportsIt)
{
    expectState(targetWithFirmware("23.2a12"), 0, "", refusal);
}

TEST_F(Reboot, IsNotSupportedByOldFirmware)
{
    const std::string message =
        "WARNING: Device cannot be rebooted automatically (not supported by the firmware version installed on this "
        "device).\n";
    expectState(targetWithFirmware("23.2a11"), 2, message, message);
}

TEST_F(Reboot, IsNotSupportedByOtherDevices)
{
    const std::string message = "WARNING: Device cannot be rebooted automatically (not supported by this device).\n";
    expectState(target({board("CN", {{"PRODUCT/BOARD_TYPE", "CB100"}}, {})}), 3, message, message);
}

TEST_F(Reboot, TellsWhenTheCheckFailed)
{
    const std::string message =
        "ERROR: Device cannot be rebooted automatically (an error occurred while checking the reboot support "
        "status).\n";
    expectState(target({item("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}})}), 4, message, message);
}

TEST(RebootMessage, IsEmptyForStatesThatHaveNone)
{
    for (const unsigned state : {0u, 5u, 6u, 0xFFFFFFFFu}) {
        EXPECT_STREQ(ZoCTrellanUpdater::rebootMessage(state), "") << state;
    }
}

TEST_F(Reboot, AsksTheSupportCheckOfADerivedUpdater)
{
    FixedAnswer updater(true, 0);
    const MessageCapture capture(updater);
    EXPECT_FALSE(updater.reboot());
    EXPECT_EQ(capture.text(), refusal);
}

TEST_F(Reboot, SaysNothingOfItsOwnWhenTheCheckSaysNo)
{
    FixedAnswer updater(false, 5);
    const MessageCapture capture(updater);
    EXPECT_FALSE(updater.reboot());
    EXPECT_EQ(capture.text(), "");
}

TEST_F(Reboot, GoesByTheAnswerOfTheCheckAndNotByItsState)
{
    FixedAnswer updater(false, 0);
    const MessageCapture capture(updater);
    EXPECT_FALSE(updater.reboot());
    EXPECT_EQ(capture.text(), "");
}
