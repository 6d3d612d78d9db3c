// Entries for several boards: the elements of "boards" and how they share the id and target path rule with their entry.
#include <gtest/gtest.h>

#include "ArchiveReader.h"

using nlohmann::ordered_json;

namespace {

const char* const bothTargetsMessage =
    "ERROR: File entry 0 is invalid. Properties \"id\" and \"targetPath\" must not be specified at the same time.\n";
const char* const noTargetMessage =
    "ERROR: File entry 0 is invalid. Either \"id\" or \"targetPath\" must be specified.\n";

// A description with one entry for `boards`; `overrides` are members of the entry.
ordered_json boardsDescription(const ordered_json& boards, ordered_json overrides = ordered_json::object())
{
    overrides["boards"] = boards;
    return description({fileEntry("a.bin", overrides)});
}

ordered_json list(std::vector<ordered_json> elements)
{
    return elements;
}

const ordered_json plain = {{"boardType", "x"}};
const ordered_json withId = {{"boardType", "x"}, {"id", 1}};
const ordered_json withPath = {{"boardType", "x"}, {"targetPath", "/x"}};

}  // namespace

TEST(Boards, MustBeAnArrayThatIsNotEmpty)
{
    for (const ordered_json& boards : {ordered_json::array(), ordered_json::object(), ordered_json(nullptr),
                                       ordered_json("x"), ordered_json(5), ordered_json(true), withId}) {
        expectRefused(boardsDescription(boards, {{"id", 1}}),
                      "ERROR: File entry 0 is invalid. A mandatory property is missing or invalid.\n");
    }
}

TEST(Boards, ElementsMustBeObjects)
{
    for (const ordered_json& element : {ordered_json(nullptr), ordered_json("x"), ordered_json(5), ordered_json(true),
                                        ordered_json::array(), list({withId})}) {
        expectRefused(boardsDescription(list({element}), {{"id", 1}}),
                      "ERROR: File entry 0 is invalid. \"boards\"-entry 0 is invalid.\n");
    }
}

TEST(Boards, ElementsNeedABoardType)
{
    expectRefused(boardsDescription(list({{{"id", 1}}})),
                  "ERROR: File entry 0 is invalid. \"boards\"-entry 0 is invalid.\n");
    expectRefused(boardsDescription(list({ordered_json::object()}), {{"id", 1}}),
                  "ERROR: File entry 0 is invalid. \"boards\"-entry 0 is invalid.\n");
}

TEST(Boards, EntryAndElementAreNamed)
{
    const ordered_json entry = fileEntry("b.bin", {{"boards", list({withId, withId, 5})}});
    expectRefused(description({fileEntry("a.bin"), entry}),
                  "ERROR: File entry 1 is invalid. \"boards\"-entry 2 is invalid.\n");
}

TEST(Boards, NullBoardTypeIsOfAWrongType)
{
    expectRefused(
        boardsDescription(list({{{"boardType", nullptr}, {"id", 1}}})),
        "ERROR: File entry 0 is invalid. Property \"boardType\" of \"boards\"-element 0 has an invalid value.\n");
}

TEST(Boards, AreCheckedOneAfterTheOther)
{
    const ordered_json wrong = {{"boardType", "x"}, {"id", "1"}};
    expectRefused(boardsDescription(list({withId, wrong, 5})),
                  "ERROR: File entry 0 is invalid. Property \"id\" of \"boards\"-element 1 has an invalid value.\n");
    expectRefused(boardsDescription(list({withId, 5, wrong})),
                  "ERROR: File entry 0 is invalid. \"boards\"-entry 1 is invalid.\n");
}

TEST(Boards, AreCheckedAfterTheEntrysOwnProperties)
{
    expectRefused(boardsDescription(list({5}), {{"mode", "none"}}),
                  "ERROR: File entry 0 is invalid. Property \"mode\" is invalid.\n");
}

TEST(Boards, AreCheckedBeforeIdAndTargetPath)
{
    expectRefused(boardsDescription(list({withId, withPath, 5})),
                  "ERROR: File entry 0 is invalid. \"boards\"-entry 2 is invalid.\n");
}

TEST(Boards, CannotContainWhatBelongsToTheFile)
{
    const std::string message =
        "ERROR: File entry 0 is invalid. \"boards\" element 1 is invalid. Properties \"version\", \"checksumCrc32\" "
        "and "
        "\"mode\" must not be specified inside a \"boards\" element.\n";
    for (const ordered_json& extra :
         {ordered_json{{"version", "1.0"}}, ordered_json{{"version", nullptr}}, ordered_json{{"checksumCrc32", 5}},
          ordered_json{{"mode", "standard"}}, ordered_json{{"mode", "upgrade"}}}) {
        ordered_json board = withId;
        board.update(extra);
        expectRefused(boardsDescription(list({withId, board})), message);
    }
}

TEST(Boards, IdAndTargetPathExcludeEachOtherInTheWholeEntry)
{
    const ordered_json both = {{"boardType", "x"}, {"id", 1}, {"targetPath", "/x"}};
    expectRefused(boardsDescription(list({both})), bothTargetsMessage);
    expectRefused(boardsDescription(list({withId, withPath})), bothTargetsMessage);
    expectRefused(boardsDescription(list({withPath, plain, withId})), bothTargetsMessage);
    expectRefused(boardsDescription(list({withId}), {{"targetPath", "/x"}}), bothTargetsMessage);
    expectRefused(boardsDescription(list({plain, withPath}), {{"id", 1}}), bothTargetsMessage);
    expectRefused(boardsDescription(list({plain}), {{"id", 1}, {"targetPath", "/x"}}), bothTargetsMessage);
}

TEST(Boards, IdAndTargetPathTogetherAreReportedBeforeTheirAbsence)
{
    expectRefused(boardsDescription(list({withId, withPath, plain})), bothTargetsMessage);
}

TEST(Boards, WithAnIdOrPathEachNeedNoneAtTheEntry)
{
    expectAccepted(boardsDescription(list({withId})));
    expectAccepted(boardsDescription(list({withId, withId})));
    expectAccepted(boardsDescription(list({withPath, withPath})));
}

TEST(Boards, WithoutAnIdOrPathNeedOneAtTheEntry)
{
    for (const ordered_json& boards : {list({withId, plain}), list({plain, withId}), list({plain})}) {
        expectRefused(boardsDescription(boards), noTargetMessage);
        expectAccepted(boardsDescription(boards, {{"id", 7}}));
    }
    expectRefused(boardsDescription(list({withPath, plain})), noTargetMessage);
    expectAccepted(boardsDescription(list({withPath, plain}), {{"targetPath", "/y"}}));
}

TEST(Boards, MayHaveAllOptionalProperties)
{
    expectAccepted(boardsDescription(list({{{"boardType", {"x", "y"}},
                                            {"boardVariant", {"v", nullptr}},
                                            {"boardId", {1, 2}},
                                            {"id", 3},
                                            {"hwCompatibilityId", {0, 1}},
                                            {"swCompatibilityId", 2},
                                            {"unknown", -1}}})));
}

TEST(Boards, InsideABoardAreIgnored)
{
    expectAccepted(boardsDescription(list({{{"boardType", "x"}, {"id", 1}, {"boards", 5}, {"featureLevel", 9}}})));
}
