// What an inspector tells of the elements that an archive entry is for.
#include <stdexcept>

#include "Inspecting.h"

using testing::ElementsAre;
using testing::IsEmpty;
using namespace ZoNTrellanInspector;

using FileKeys = Inspecting;

TEST_F(FileKeys, AreAsTheEntryStatesThem)
{
    entries = {fileEntry("one.bin", {{"boardType", {"T", "U", "T"}},
                                     {"boardVariant", {"red", nullptr}},
                                     {"boardId", {1, 4294967296u}},
                                     {"id", 18446744073709551615u},
                                     {"hwCompatibilityId", 3},
                                     {"swCompatibilityId", {4}}})};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->readFileKeys(0), 1u);
    const ZoTFileKeys& keys = inspector->getFileKeys(0);
    EXPECT_EQ(keys.board, -1);
    EXPECT_THAT(keys.decidesFor, ElementsAre("T", "U"));
    EXPECT_EQ(keys.boardType, R"(["T","U","T"])");
    EXPECT_EQ(keys.boardVariant, R"(["red",null])");
    EXPECT_EQ(keys.boardId, "[1,4294967296]");
    EXPECT_FALSE(keys.isFile);
    EXPECT_EQ(keys.id, "18446744073709551615");
    EXPECT_EQ(keys.targetPath, "");
    EXPECT_EQ(keys.hwCompatibilityId, "3");
    EXPECT_EQ(keys.swCompatibilityId, "[4]");
}

TEST_F(FileKeys, HaveDefaultsForWhatTheEntryLeavesOut)
{
    entries = {fileEntry("one.bin", {{"boardType", "U"}, {"targetPath", "a"}})};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->readFileKeys(0), 1u);
    const ZoTFileKeys& keys = inspector->getFileKeys(0);
    EXPECT_EQ(keys.boardType, R"("U")");
    EXPECT_EQ(keys.boardVariant, "null");
    EXPECT_EQ(keys.boardId, "0");
    EXPECT_EQ(keys.hwCompatibilityId, "0");
    EXPECT_EQ(keys.swCompatibilityId, "0");
    EXPECT_TRUE(keys.isFile);
    EXPECT_EQ(keys.id, "");
    EXPECT_EQ(keys.targetPath, R"("a")");
}

TEST_F(FileKeys, OfABoardObjectStandInItOrElseInTheEntry)
{
    entries = {fileEntry(
        "site.cfg",
        {{"boardId", 9},
         {"targetPath", "a"},
         {"boards", {{{"boardType", "T"}}, {{"boardType", "U"}, {"boardId", {8, 9}}, {"targetPath", "b"}}}}})};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->readFileKeys(0), 2u);
    EXPECT_EQ(inspector->getFileKeys(0).board, 0);
    EXPECT_EQ(inspector->getFileKeys(0).boardId, "9");
    EXPECT_EQ(inspector->getFileKeys(0).targetPath, R"("a")");
    EXPECT_EQ(inspector->getFileKeys(1).board, 1);
    EXPECT_EQ(inspector->getFileKeys(1).boardId, "[8,9]");
    EXPECT_EQ(inspector->getFileKeys(1).targetPath, R"("b")");
}

TEST_F(FileKeys, TellForWhichBoardTypesAnObjectDecides)
{
    entries = {fileEntry("one.bin", {{"id", 1},
                                     {"boards",
                                      {{{"boardType", {"T", "U"}}},
                                       {{"boardType", {"U", "V"}}, {"boardId", 2}},
                                       {{"boardType", "T"}, {"boardId", 3}}}}})};
    ASSERT_EQ(apply(), 0u);

    ASSERT_EQ(inspector->readFileKeys(0), 3u);
    EXPECT_THAT(inspector->getFileKeys(0).decidesFor, ElementsAre("T", "U"));
    EXPECT_THAT(inspector->getFileKeys(1).decidesFor, ElementsAre("V"));
    EXPECT_EQ(inspector->getFileKeys(1).boardType, R"(["U","V"])");
    EXPECT_THAT(inspector->getFileKeys(2).decidesFor, IsEmpty());
    EXPECT_EQ(inspector->getFileKeys(2).boardId, "3");
}

TEST_F(FileKeys, AreThoseOfTheFileThatWasReadLast)
{
    entries = {ioEntry("one.bin", 1), fileEntry("two.bin", {{"id", 2}, {"boards", {{{"boardType", "T"}}}}})};
    ASSERT_EQ(apply(), 0u);
    EXPECT_THROW(inspector->getFileKeys(0), std::out_of_range);

    ASSERT_EQ(inspector->readFileKeys(1), 1u);
    EXPECT_EQ(inspector->getFileKeys(0).id, "2");
    ASSERT_EQ(inspector->readFileKeys(0), 1u);
    EXPECT_EQ(inspector->getFileKeys(0).id, "1");

    EXPECT_THROW(inspector->getFileKeys(1), std::out_of_range);
    EXPECT_THROW(inspector->readFileKeys(2), std::out_of_range);
    EXPECT_EQ(inspector->getFileKeys(0).id, "1");
}
