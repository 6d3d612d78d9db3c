// A program that holds the library and the platform itself. The constants that name the items of an inventory tree get
// their values after the library's files have had their turn.
#include <gtest/gtest.h>

#include <memory>

#include "ZoITrellanUpdater.h"
#include "support/MessageCapture.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

TEST(LateConstants, NameTheBoardsAllTheSame)
{
    const SimulatedTarget device(target({board("HCN",
                                               {{"PRODUCT/BOARD_TYPE", "KR5120"},
                                                {"PRODUCT/VARIANT", "V1"},
                                                {"PRODUCT/SERIAL_NUMBER", 5},
                                                {"PRODUCT/NAME", "Board"},
                                                {"PRODUCT/UNITNAME", "Box"}},
                                               {updateElement(1, {{"NAME", "UserFirmware"}, {"VERSION", "23.2"}})})}));
    ZoNTrellanUpdater::ZoTOptions options;
    options.command = ZoNTrellanUpdater::INSTALLED_VERSIONS;
    options.boardTypes = "KR5120";
    options.verbose = true;
    const std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
    MessageCapture messages(*updater);
    ASSERT_EQ(updater->apply(), 0u);
    messages.clear();
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(messages.text(),
              "\n"
              "*******\n"
              "* Box *\n"
              "*******\n"
              "Update element             | Version\n"
              "------------------------------------\n"
              "Board (V1), SN 5, Firmware | 23.2   \n");
}
