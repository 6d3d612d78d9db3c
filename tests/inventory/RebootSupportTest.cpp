// Whether the target can reboot by itself: decided by the first board's type and its active firmware's version.
#include "inventory/InventoryFixture.h"

namespace {

using nlohmann::ordered_json;

// The states, as hosts know them.
constexpr unsigned supported = 0;
constexpr unsigned undetermined = 1;
constexpr unsigned tooOld = 2;
constexpr unsigned notByDevice = 3;
constexpr unsigned checkFailed = 4;

class RebootSupport : public InventoryFixture {
protected:
    // The state after reading a target with these items.
    unsigned stateOf(const std::vector<Json>& items)
    {
        EXPECT_EQ(read(items), 1);
        return inventory().getRebootSupportState();
    }

    // The state after reading a target with an HCN of this type that carries these elements.
    unsigned stateOf(const std::string& boardType, const std::vector<Json>& elements)
    {
        return stateOf({board("HCN", {{"PRODUCT/BOARD_TYPE", boardType}}, elements)});
    }

    // The state of a supported target when reading `parameter` (item and name) fails.
    unsigned stateWhenReadingFails(const std::string& parameter)
    {
        Json document = target(
            {board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {named(1, "UserFirmware", {{"VERSION", "24.0"}})})});
        document["script"]["values"][parameter] = {{{"code", 9}, {"text", "cannot read"}}};
        EXPECT_EQ(readTarget(document), 1);
        return inventory().getRebootSupportState();
    }
};

ordered_json firmware(const std::string& version)
{
    return named(1, "UserFirmware", {{"VERSION", version}});
}

TEST_F(RebootSupport, DependsOnTheFirmwareVersionOfAKr5120)
{
    EXPECT_EQ(stateOf("KR5120", {firmware("23.2a11")}), tooOld);
    EXPECT_EQ(stateOf("KR5120", {firmware("23.2a12")}), supported);
    EXPECT_EQ(stateOf("KR5120", {firmware("23.2b1")}), supported);
    EXPECT_EQ(stateOf("KR5120", {firmware("23.1")}), tooOld);
    EXPECT_EQ(stateOf("KR5120", {firmware("23.2")}), supported);
}

TEST_F(RebootSupport, DependsOnTheFirmwareVersionOfAKr5140)
{
    EXPECT_EQ(stateOf("KR5140", {firmware("4.9")}), tooOld);
    EXPECT_EQ(stateOf("KR5140", {firmware("5.0b7")}), tooOld);
    EXPECT_EQ(stateOf("KR5140", {firmware("5.0s255.65535p65535")}), tooOld);
    EXPECT_EQ(stateOf("KR5140", {firmware("5.0")}), supported);
    EXPECT_EQ(stateOf("KR5140", {firmware("5.1")}), supported);
}

TEST_F(RebootSupport, OtherBoardTypesDoNotSupportIt)
{
    EXPECT_EQ(stateOf("KR5130", {firmware("99.0")}), notByDevice);
    EXPECT_EQ(stateOf("", {firmware("99.0")}), notByDevice);
    EXPECT_EQ(stateOf("kr5120", {firmware("99.0")}), notByDevice);
}

TEST_F(RebootSupport, TheFactoryFirmwareCountsAsWell)
{
    EXPECT_EQ(stateOf("KR5120", {named(1, "FactoryFirmware", {{"VERSION", "23.2"}})}), supported);
    EXPECT_EQ(stateOf("KR5120", {named(1, "FactoryFirmware", {{"VERSION", "23.1"}})}), tooOld);
}

TEST_F(RebootSupport, TheFirstActiveFirmwareDecides)
{
    EXPECT_EQ(stateOf("KR5120", {named(1, "FactoryFirmware", {{"VERSION", "1.0"}}),
                                 named(2, "UserFirmware", {{"VERSION", "24.0"}})}),
              tooOld);
    EXPECT_EQ(stateOf("KR5120",
                      {named(1, "FactoryFirmware", {{"VERSION", "1.0"}, {"ACTIVE", 0}}),
                       named(2, "UserFpga", {{"VERSION", "1.0"}}), named(3, "UserFirmware", {{"VERSION", "24.0"}})}),
              supported);
}

TEST_F(RebootSupport, AnyActiveValueButZeroIsActive)
{
    EXPECT_EQ(stateOf("KR5120", {named(1, "UserFirmware", {{"VERSION", "1.0"}, {"ACTIVE", 2}})}), tooOld);
}

TEST_F(RebootSupport, OnlyInactiveFirmwareLeavesTheStateUndetermined)
{
    EXPECT_EQ(stateOf("KR5140", {named(1, "UserFirmware", {{"VERSION", "6.0"}, {"ACTIVE", 0}})}), undetermined);
}

TEST_F(RebootSupport, OtherElementsAreNoFirmware)
{
    EXPECT_EQ(stateOf("KR5120",
                      {named(1, "CnFirmware", {{"VERSION", "24.0"}}), named(2, "userFirmware", {{"VERSION", "24.0"}})}),
              undetermined);
}

TEST_F(RebootSupport, WithoutActiveFirmwareTheStateOfTheReadBeforeIsKept)
{
    ASSERT_EQ(stateOf("KR5120", {firmware("24.0")}), supported);
    EXPECT_EQ(stateOf("KR5120", {named(1, "UserFirmware", {{"VERSION", "24.0"}, {"ACTIVE", 0}})}), supported);
    ASSERT_EQ(stateOf("XY", {firmware("24.0")}), notByDevice);
    EXPECT_EQ(stateOf("KR5140", {}), notByDevice);
}

TEST_F(RebootSupport, OnlyATargetThatStartsWithAnHcnSupportsIt)
{
    const ordered_json hcn = board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {firmware("24.0")});
    EXPECT_EQ(stateOf({item("CN", {}), hcn}), notByDevice);
    EXPECT_EQ(stateOf({hcn, item("CN", {})}), supported);
}

TEST_F(RebootSupport, TheIndexOfTheHcnDoesNotMatter)
{
    EXPECT_EQ(stateOf({board("HCN[3]", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {firmware("24.0")})}), supported);
}

TEST_F(RebootSupport, TheSearchsFiltersDoNotMatter)
{
    options.elementNames = "Other";
    options.configuration = true;
    EXPECT_EQ(stateOf("KR5120", {firmware("24.0")}), supported);
    EXPECT_TRUE(names().empty());
}

TEST_F(RebootSupport, AnEmptyTargetIsAnError)
{
    EXPECT_EQ(stateOf(std::vector<ordered_json>{}), checkFailed);
}

TEST_F(RebootSupport, AnHcnWithoutATypeIsAnError)
{
    EXPECT_EQ(stateOf({board("HCN", {}, {firmware("24.0")})}), checkFailed);
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(RebootSupport, AnHcnWithoutUpdateInfoIsAnErrorWhateverItsType)
{
    EXPECT_EQ(stateOf({item("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}})}), checkFailed);
    EXPECT_EQ(stateOf({item("HCN", {{"PRODUCT/BOARD_TYPE", "XY"}})}), checkFailed);
    EXPECT_EQ(errors.count(), 0u);
}

TEST_F(RebootSupport, AValueThatCannotBeReadIsAnError)
{
    EXPECT_EQ(stateWhenReadingFails("/ROOT/HCN:PRODUCT/BOARD_TYPE"), checkFailed);
    EXPECT_EQ(stateWhenReadingFails("/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:ACTIVE"), checkFailed);
    EXPECT_EQ(stateWhenReadingFails("/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:NAME"), checkFailed);
    EXPECT_EQ(stateWhenReadingFails("/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:VERSION"), checkFailed);
    EXPECT_EQ(stateWhenReadingFails("/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT:VERSION_HISTORY"), supported);
}

TEST_F(RebootSupport, AnActiveValueBeyondEightBitsIsAnError)
{
    EXPECT_EQ(stateOf("KR5120", {named(1, "UserFirmware", {{"VERSION", "24.0"}, {"ACTIVE", 256}})}), checkFailed);
}

TEST_F(RebootSupport, AFirmwareWithoutAVersionIsAnErrorAndAnUnreadableOneIsTooOld)
{
    EXPECT_EQ(stateOf("KR5120", {named(1, "UserFirmware")}), checkFailed);
    EXPECT_EQ(stateOf("KR5120", {firmware("newest")}), tooOld);
}

TEST_F(RebootSupport, NothingBehindTheFirmwareIsRead)
{
    const ordered_json broken = item("UPDATE_ELEMENT[2]", {{"CONFIGURATION", 0}});
    EXPECT_EQ(stateOf("KR5120", {firmware("24.0"), broken}), supported);
    EXPECT_EQ(stateOf("KR5120", {broken, firmware("24.0")}), checkFailed);
}

TEST_F(RebootSupport, TheNameOfAnInactiveElementIsNotRead)
{
    const ordered_json nameless = item("UPDATE_ELEMENT[2]", {{"CONFIGURATION", 0}, {"ACTIVE", 0}});
    EXPECT_EQ(stateOf("KR5120", {nameless, firmware("24.0")}), supported);
}

TEST_F(RebootSupport, ErrorsOfTheReadsBeforeDoNotMatter)
{
    EXPECT_EQ(stateOf({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/ID", "none"}}, {firmware("24.0")})}),
              supported);
    EXPECT_EQ(errors.count(), 1u);
}

TEST_F(RebootSupport, NothingIsPrintedWithoutVerbose)
{
    stateOf(std::vector<ordered_json>{});
    EXPECT_EQ(printed(), "");
}

}  // namespace
