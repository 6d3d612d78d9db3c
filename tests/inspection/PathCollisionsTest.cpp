// The check that no two entries write the same file on the flash drive of one board.
#include <chrono>

#include "Inspecting.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class PathCollisions : public Inspecting {
protected:
    // Checks entries that are used, each by a board of its own, which it names.
    Names checkEntries(const std::vector<Json>& stated)
    {
        boards.clear();
        entries.clear();
        for (std::size_t i = 0; i < stated.size(); ++i) {
            const std::string number = std::to_string(i);
            Json entry = {{"checksumCrc32", 0xCBF43926u}};
            entry.update(stated[i]);
            use(entry, i);
            entries.push_back(fileEntry("file" + number, entry));
            contents["file" + number] = "123456789";
        }
        EXPECT_EQ(apply(), 0u);
        std::set<int> used;
        for (unsigned i = 0; i < inspector->getElementCount(); ++i) {
            used.insert(inspector->getElement(i).filePosition);
        }
        EXPECT_EQ(used.size(), stated.size()) << "some entries are not used";
        return check();
    }

    // Two entries for "site.cfg" on boards of type "T", with these further members; true when they collide.
    bool collide(Json first, Json second)
    {
        for (Json* const entry : {&first, &second}) {
            entry->update({{"boardType", Json::array({"T"})}, {"targetPath", "site.cfg"}});
        }
        return checkEntries({first, second}) == Names{"error path-collision /files/1/targetPath"};
    }

private:
    // Adds a type to the entry that no other one has, and a board of this type with the file.
    void use(Json& entry, std::size_t number)
    {
        const std::string ownType = "own " + std::to_string(number);
        Json& object = entry.contains("boards") ? entry["boards"].back() : entry;
        if (!object["boardType"].is_array()) {
            object["boardType"] = Json::array({object["boardType"]});
        }
        object["boardType"].push_back(ownType);
        const auto first = [&](const char* key, const Json& otherwise) {
            const Json value = object.contains(key) ? object[key] : entry.contains(key) ? entry[key] : otherwise;
            return value.is_array() ? value.at(0) : value;
        };
        Json parameters = {{"PRODUCT/BOARD_TYPE", ownType}, {"PRODUCT/ID", first("boardId", 0)}};
        if (const Json variant = first("boardVariant", nullptr); !variant.is_null()) {
            parameters["PRODUCT/VARIANT"] = variant;
        }
        boards.push_back(board("IOMODULE[" + std::to_string(number + 1) + "]", parameters,
                               {fileElement(1, {{"LOCATION", first("targetPath", "")},
                                                {"HW_COMPATIBILITY_ID", first("hwCompatibilityId", 0)},
                                                {"SW_COMPATIBILITY_ID", first("swCompatibilityId", 0)}})}));
    }
};

nlohmann::ordered_json entryFor(const std::string& type, const std::string& path)
{
    return {{"boardType", type}, {"targetPath", path}};
}

}  // namespace

TEST_F(PathCollisions, AreFoundAtTheLaterOfTwoEntries)
{
    EXPECT_THAT(checkEntries({entryFor("T", "a/b"), entryFor("T", "c"), entryFor("T", "a/b")}),
                ElementsAre("error path-collision /files/2/targetPath"));
    EXPECT_THAT(messagesFound(), ElementsAre("the path \"a/b\" is written by files[0] \"file0\" too on boards of type "
                                             "\"T\": choose another path"));
}

TEST_F(PathCollisions, AreFoundForEveryLaterEntry)
{
    EXPECT_THAT(checkEntries({entryFor("T", "a"), entryFor("T", "a"), entryFor("T", "a")}),
                ElementsAre("error path-collision /files/1/targetPath", "error path-collision /files/2/targetPath"));
}

TEST_F(PathCollisions, NameTheFirstOfSeveralWhicheverOfItsValuesTheEntryShares)
{
    const auto entryForId = [](const Json& boardId) {
        Json entry = entryFor("T", "a");
        entry["boardId"] = boardId;
        return entry;
    };
    EXPECT_THAT(checkEntries({entryForId(2), entryForId(1), entryForId(9), entryForId({1, 2})}),
                ElementsAre("error path-collision /files/3/targetPath"));
    EXPECT_THAT(messagesFound(), ElementsAre("the path \"a\" is written by files[0] \"file0\" too on boards of type "
                                             "\"T\": choose another path"));
}

TEST_F(PathCollisions, DoNotCountComponentsThatLeadNowhere)
{
    for (const std::string path : {"/a/b", "a//b", "./a/./b", "a/c/../b", "//a/b"}) {
        EXPECT_THAT(checkEntries({entryFor("T", "a/b"), entryFor("T", path)}),
                    ElementsAre("error path-collision /files/1/targetPath"))
            << path;
    }
    EXPECT_THAT(checkEntries({entryFor("T", "a/b"), entryFor("T", "A/b"), entryFor("T", "ab")}), IsEmpty());
}

TEST_F(PathCollisions, AreFoundWithATemporaryFile)
{
    EXPECT_THAT(checkEntries({entryFor("T", "a"), entryFor("T", "./a.tmp")}),
                ElementsAre("error path-collision /files/1/targetPath"));
    EXPECT_THAT(
        messagesFound(),
        ElementsAre("the path \"./a.tmp\" is that of the temporary file of files[0] \"file0\", which is written "
                    "to \"a\" on boards of type \"T\": choose another path"));

    EXPECT_THAT(checkEntries({entryFor("T", "a.tmp"), entryFor("T", "a")}),
                ElementsAre("error path-collision /files/1/targetPath"));
    EXPECT_THAT(messagesFound(),
                ElementsAre("the temporary file of the path \"a\" takes the place of files[0] \"file0\", which is "
                            "written to \"a.tmp\" on boards of type \"T\": choose another path"));

    EXPECT_THAT(checkEntries({entryFor("T", "a"), entryFor("T", "a.tmp.tmp")}), IsEmpty());
}

TEST_F(PathCollisions, AreNoneOnDifferentBoards)
{
    EXPECT_THAT(checkEntries({entryFor("T", "a"), entryFor("U", "a")}), IsEmpty());
}

TEST_F(PathCollisions, NeedABoardThatBothEntriesFit)
{
    EXPECT_TRUE(collide({}, {}));
    EXPECT_FALSE(collide({}, {{"boardId", 1}}));
    EXPECT_TRUE(collide({}, {{"boardId", {1, 0}}}));
    EXPECT_TRUE(collide({{"boardId", {1, 2}}}, {{"boardId", {3, 2}}}));
    EXPECT_FALSE(collide({{"boardId", {1, 2}}}, {{"boardId", {3, 4}}}));
    EXPECT_FALSE(collide({}, {{"boardVariant", "blue"}}));
    EXPECT_TRUE(collide({{"boardVariant", nullptr}}, {{"boardVariant", {"blue", nullptr}}}));
    EXPECT_TRUE(collide({{"boardVariant", {"red", "blue"}}}, {{"boardVariant", {"blue", nullptr}}}));
    EXPECT_FALSE(collide({{"hwCompatibilityId", 1}}, {{"hwCompatibilityId", 2}}));
    EXPECT_TRUE(collide({{"hwCompatibilityId", {1, 2}}}, {{"hwCompatibilityId", 2}}));
    EXPECT_FALSE(collide({{"swCompatibilityId", 1}}, {}));
    EXPECT_TRUE(collide({{"swCompatibilityId", {1, 0}}}, {}));
    EXPECT_FALSE(collide({{"boardId", {1, 2}}, {"hwCompatibilityId", 7}}, {{"boardId", {2, 3}}}));
}

TEST_F(PathCollisions, DoNotComeFromValuesThatNoBoardCanHave)
{
    EXPECT_FALSE(collide({{"boardVariant", {"red", ""}}}, {{"boardVariant", {"blue", ""}}}));
    EXPECT_FALSE(collide({{"boardId", {1, 4294967296u}}}, {{"boardId", {2, 4294967296u}}}));
    EXPECT_TRUE(collide({{"boardId", {1, 4294967295u}}}, {{"boardId", {2, 4294967295u}}}));
}

TEST_F(PathCollisions, GoByTheBoardObjectThatDecides)
{
    const Json first = {{"boards",
                         {{{"boardType", "T"}, {"boardId", 1}, {"targetPath", "a"}},
                          {{"boardType", {"T", "U"}}, {"targetPath", "b"}}}}};
    EXPECT_THAT(checkEntries({first, entryFor("T", "b")}), IsEmpty());
    EXPECT_THAT(checkEntries({first, entryFor("U", "b")}), ElementsAre("error path-collision /files/1/targetPath"));
    EXPECT_THAT(checkEntries({entryFor("U", "b"), first}),
                ElementsAre("error path-collision /files/1/boards/1/targetPath"));
}

TEST_F(PathCollisions, TakeWhatABoardObjectLeavesOutFromTheEntry)
{
    const Json shared = {
        {"targetPath", "a"}, {"boardId", 5}, {"boards", {{{"boardType", "T"}}, {{"boardType", "U"}, {"boardId", 6}}}}};
    EXPECT_THAT(checkEntries({{{"boardType", "T"}, {"boardId", 5}, {"targetPath", "a"}}, shared}),
                ElementsAre("error path-collision /files/1/targetPath"));
    EXPECT_THAT(checkEntries({{{"boardType", "U"}, {"boardId", 5}, {"targetPath", "a"}}, shared}), IsEmpty());
}

TEST_F(PathCollisions, AreToldOnceForAPathThatBoardObjectsShare)
{
    const Json shared = {{"targetPath", "a"}, {"boards", {{{"boardType", "T"}}, {{"boardType", "U"}}}}};
    EXPECT_THAT(checkEntries({{{"boardType", {"T", "U"}}, {"targetPath", "a"}}, shared}),
                ElementsAre("error path-collision /files/1/targetPath"));
    EXPECT_EQ(inspector->getFinding(0).board, -1);
}

TEST_F(PathCollisions, AreNoneBetweenTheBoardObjectsOfOneEntry)
{
    EXPECT_THAT(checkEntries({{{"boards",
                                {{{"boardType", "T"}, {"targetPath", "a"}},
                                 {{"boardType", "U"}, {"targetPath", "a"}},
                                 {{"boardType", "T"}, {"targetPath", "a.tmp"}}}}}}),
                IsEmpty());
}

TEST_F(PathCollisions, AreNotLookedForAtPathsThatAreRefused)
{
    EXPECT_THAT(checkEntries({entryFor("T", "../a"), entryFor("T", "../a")}),
                ElementsAre("error path-escape /files/0/targetPath", "error path-escape /files/1/targetPath"));
}
