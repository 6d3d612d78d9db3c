// What an inspector tells of elements beyond their states.
#include <stdexcept>

#include "Inspecting.h"

using namespace ZoNTrellanInspector;

namespace {

class Elements : public Inspecting {
protected:
    // The only element of a target with this board.
    ZoTElement only(const Json& board)
    {
        boards = {board};
        EXPECT_EQ(apply(ZoNTrellanUpdater::COMPARE_VERSIONS), 0u);
        return inspector->getElement(0);
    }

    ZoTKeys onlyKeys(const Json& board)
    {
        only(board);
        return inspector->getElementKeys(0);
    }
};

}  // namespace

TEST_F(Elements, StandInTheOrderOfTheHostsList)
{
    boards = {ioBoard({installed(1), installed(2)})};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->getElementCount(), 2u);
    EXPECT_EQ(inspector->getElement(0).index, 0u);
    EXPECT_EQ(inspector->getElement(0).name, "Element 1");
    EXPECT_EQ(inspector->getElement(1).index, 1u);
    EXPECT_EQ(inspector->getElement(1).name, "Element 2");
    EXPECT_THROW(inspector->getElement(2), std::out_of_range);
    EXPECT_THROW(inspector->getElementKeys(2), std::out_of_range);
    EXPECT_THROW(inspector->getElementErrorCount(2), std::out_of_range);
    EXPECT_THROW(inspector->getElementError(2, 0), std::out_of_range);
}

TEST_F(Elements, HaveTheNameThatTheFilterGoesBy)
{
    boards = {ioBoard({installed(1, {{"NAME", "UserFpga"}}), installed(2)})};
    options.elementNames = "UserFpga";
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->getElementCount(), 1u);
    EXPECT_EQ(inspector->getElement(0).name, "UserFpga");
}

TEST_F(Elements, ShowASerialNumberAsTheirDisplayNamesDo)
{
    const auto shown = [&](unsigned serialNumber) {
        return only(board("IOMODULE", {{"PRODUCT/SERIAL_NUMBER", serialNumber}}, {installed(1)})).displayedSerialNumber;
    };
    EXPECT_EQ(shown(16777232), "16(1)");
    EXPECT_EQ(shown(4711), "4711");
    EXPECT_EQ(shown(0), "");
    EXPECT_EQ(shown(0xFF000000u), "0(255)");
}

TEST_F(Elements, TellTheirBoardAndTheInstalledChecksum)
{
    const ZoTElement element = only(ioBoard({installed(1)}));
    EXPECT_EQ(element.boardAddress, "/ROOT/IOMODULE");
    EXPECT_TRUE(element.isListed);
    EXPECT_TRUE(element.hasInstalledChecksum);
    EXPECT_EQ(element.installedChecksum, 5u);
}

TEST_F(Elements, TellThatTheTargetGivesNoChecksum)
{
    const ZoTElement element = only(ioBoard({updateElement(1, {{"NAME", "X"}})}));
    EXPECT_FALSE(element.hasInstalledChecksum);
    EXPECT_EQ(element.installedChecksum, 0u);
}

TEST_F(Elements, HaveTheKeysOfTheirBoard)
{
    const ZoTKeys keys =
        onlyKeys(board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}, {"PRODUCT/VARIANT", "blue"}, {"PRODUCT/ID", 12}},
                       {installed(3, {{"HW_COMPATIBILITY_ID", 4}, {"SW_COMPATIBILITY_ID", 5}})}));
    EXPECT_EQ(keys.boardType, "IO7");
    EXPECT_TRUE(keys.hasBoardVariant);
    EXPECT_EQ(keys.boardVariant, "blue");
    EXPECT_EQ(keys.boardId, 12u);
    EXPECT_EQ(keys.hwCompatibilityId, 4u);
    EXPECT_EQ(keys.swCompatibilityId, 5u);
    EXPECT_FALSE(keys.isFile);
    EXPECT_EQ(keys.id, 3u);
    EXPECT_EQ(keys.targetPath, "");
}

TEST_F(Elements, HaveNoVariantWhereTheBoardHasNone)
{
    const ZoTKeys keys = onlyKeys(ioBoard({installed(3)}));
    EXPECT_FALSE(keys.hasBoardVariant);
    EXPECT_EQ(keys.boardVariant, "");
    EXPECT_EQ(keys.boardId, 0u);
}

TEST_F(Elements, OfFilesHaveATargetPathAndNoId)
{
    const ZoTKeys keys = onlyKeys(ioBoard({fileElement(9, {{"LOCATION", "config/site.cfg"}})}));
    EXPECT_TRUE(keys.isFile);
    EXPECT_EQ(keys.id, 0u);
    EXPECT_EQ(keys.targetPath, "config/site.cfg");
}

TEST_F(Elements, KeysHaveEveryByteOfTheTargetsTexts)
{
    const ZoTKeys keys = onlyKeys(board("IOMODULE", {{"PRODUCT/BOARD_TYPE", std::string("a\0b", 3)}}, {installed(1)}));
    EXPECT_EQ(keys.boardType, std::string("a\0b", 3));
}

TEST_F(Elements, MadeForAFileAreNotListedByTheTarget)
{
    boards = {hcnBoard({installed(1)})};
    entries = {fileEntry("hcn.bin"), fileEntry("site.cfg", {{"targetPath", "config/site.cfg"}})};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->getElementCount(), 2u);
    EXPECT_TRUE(inspector->getElement(0).isListed);
    const ZoTElement& made = inspector->getElement(1);
    EXPECT_EQ(made.index, 1u);
    EXPECT_FALSE(made.isListed);
    EXPECT_EQ(made.name, "Updatable file (site.cfg)");
    EXPECT_EQ(made.boardAddress, "/ROOT/HCN");
    EXPECT_EQ(made.filePosition, 1);
    EXPECT_EQ(inspector->getElementKeys(1).targetPath, "config/site.cfg");
}

TEST_F(Elements, TellTheirFileByItsPositionInTheList)
{
    boards = {ioBoard({installed(1), installed(2)})};
    entries = {ioEntry("new.bin", 2, {{"featureLevel", 3}}), ioEntry("two.bin", 2)};
    ASSERT_EQ(apply(), 0u);

    EXPECT_EQ(inspector->getElement(0).filePosition, -1);
    EXPECT_EQ(inspector->getElement(1).filePosition, 0);
}

TEST_F(Elements, AreDowngradedWhereTheFilesVersionIsTheLowerOfTwoKnownOnes)
{
    const auto isDowngrade = [&](const std::string& from, const Json& to) {
        entries = {ioEntry("one.bin", 1, {{"version", to}})};
        return only(ioBoard({installed(1, {{"VERSION", from}})})).isDowngrade;
    };
    EXPECT_TRUE(isDowngrade("2.0", "1.9"));
    EXPECT_TRUE(isDowngrade("2.0", "2.0b3"));
    EXPECT_FALSE(isDowngrade("2.0", "2.0"));
    EXPECT_FALSE(isDowngrade("2.0", "2.1"));
    EXPECT_FALSE(isDowngrade("2.0", nullptr));
    EXPECT_FALSE(isDowngrade("", "0.1a1"));

    entries.clear();
    EXPECT_FALSE(only(ioBoard({installed(1)})).isDowngrade);
}

TEST_F(Elements, AreFoundAnewAfterEachApply)
{
    boards = {ioBoard({installed(1), installed(2)})};
    ASSERT_EQ(apply(), 0u);
    ASSERT_EQ(inspector->getElementCount(), 2u);
    ASSERT_EQ(updater->apply(), 0u);

    ASSERT_EQ(inspector->getElementCount(), 2u);
    EXPECT_EQ(inspector->getElement(1).name, "Element 2");
    EXPECT_THROW(inspector->getElement(2), std::out_of_range);
}
