// The label and the short kind under which an element is shown.
#include "inventory/InventoryFixture.h"
#include "support/PlatformText.h"

namespace {

struct Display {
    std::string type;
    std::string name;
};

Display display(const char* boardName, const char* boardType, unsigned serialNumber, const char* name)
{
    ZoCString displayType("previous");
    ZoCString displayName("previous");
    ZoCUpdateInventory::generateDisplayString(boardName, boardType, serialNumber, name, displayType, displayName);
    return {str(displayType), str(displayName)};
}

struct Kind {
    const char* name;
    const char* type;
};

class DisplayType : public ::testing::TestWithParam<Kind> {};

TEST_P(DisplayType, IsMadeFromTheName)
{
    EXPECT_EQ(display("Board", "T", 0, GetParam().name).type, GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(
    Names, DisplayType,
    ::testing::Values(Kind{"UserFirmware", "Firmware"}, Kind{"CnFirmware", "Firmware"},
                      Kind{"HypervisorFirmware", "Hypervisor"}, Kind{"UserFpga", "FPGA"}, Kind{"IoFpga", "FPGA"},
                      Kind{"IoFpga3", "FPGA"}, Kind{"IoFpgaUserFirmware", "FPGA"}, Kind{"UserIpl", "Bootloader"},
                      Kind{"CnIpl", "Bootloader"}, Kind{"UserCpld", "CPLD"}, Kind{"IoCpld", "CPLD"},
                      // Everything else is its own kind: other letter cases, prefixes and longer names.
                      Kind{"IoCpld3", "IoCpld3"}, Kind{"UserFpga2", "UserFpga2"},
                      Kind{"UserFirmware ", "UserFirmware "}, Kind{"userfirmware", "userfirmware"},
                      Kind{"ioFpga", "ioFpga"}, Kind{"IoFpg", "IoFpg"}, Kind{"MyIoFpga", "MyIoFpga"},
                      Kind{"FactoryFirmware", "FactoryFirmware"}, Kind{"Updatable file", "Updatable file"},
                      Kind{"", ""}));

TEST(DisplayString, NamesTheBoardItsSerialNumberAndTheKind)
{
    EXPECT_EQ(display("Processor board", "KR5120", 16777232, "UserFpga").name, "Processor board, SN 16(1), FPGA");
}

TEST(DisplayString, ABoardWithoutANameIsNamedByItsType)
{
    EXPECT_EQ(display("", "T1", 0, "Custom").name, "T1, Custom");
}

TEST(DisplayString, ASerialNumberWithoutTopBitsIsShownWhole)
{
    EXPECT_EQ(display("Board", "T", 1, "X").name, "Board, SN 1, X");
    EXPECT_EQ(display("Board", "T", 16777215, "X").name, "Board, SN 16777215, X");
}

TEST(DisplayString, TheTopBitsOfASerialNumberFollowInParentheses)
{
    EXPECT_EQ(display("Board", "T", 16777216, "X").name, "Board, SN 0(1), X");
    EXPECT_EQ(display("Board", "T", 4294967295u, "X").name, "Board, SN 16777215(255), X");
}

TEST(DisplayString, WithoutASerialNumberThereIsNone)
{
    EXPECT_EQ(display("Board", "T", 0, "UserIpl").name, "Board, Bootloader");
}

}  // namespace
