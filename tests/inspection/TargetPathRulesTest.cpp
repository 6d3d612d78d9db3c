// The check of the paths that files get on the flash drive, each by itself.
#include "Inspecting.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TargetPathRules : public Inspecting {
protected:
    // A file for the flash drive with these members.
    void applyEntry(const Json& members)
    {
        boards = {hcnBoard({installed(1)})};
        contents = {{"hcn.bin", "123456789"}, {"site.cfg", "123456789"}};
        Json entry = {{"checksumCrc32", 0xCBF43926u}};
        entry.update(members);
        entries = {fileEntry("hcn.bin", {{"checksumCrc32", 0xCBF43926u}}), fileEntry("site.cfg", entry)};
        ASSERT_EQ(apply(), 0u);
        ASSERT_EQ(inspector->getElementCount(), 2u);
    }

    Names checkPath(const std::string& path)
    {
        applyEntry({{"targetPath", path}});
        return check();
    }
};

}  // namespace

TEST_F(TargetPathRules, TakeAPathOnTheFlashDrive)
{
    for (const std::string path : {"site.cfg", "a/b/site.cfg", "/a//./site.cfg", "a/../site.cfg", "..a/site..", "-x"}) {
        EXPECT_THAT(checkPath(path), IsEmpty()) << path;
    }
}

TEST_F(TargetPathRules, RefuseAPathThatLeadsOutOfTheFlashDrive)
{
    for (const std::string path : {"../site.cfg", "a/../../site.cfg", "a/../../cfdrive/site.cfg"}) {
        EXPECT_THAT(checkPath(path), ElementsAre("error path-escape /files/1/targetPath")) << path;
        EXPECT_EQ(messagesFound().at(0),
                  "the path \"" + path + "\" may lead out of the flash drive: state it without \"..\"");
    }
}

TEST_F(TargetPathRules, RefuseAPathThatNamesNoFile)
{
    for (const std::string path : {"", ".", "a/", "a/.", "a/..", ".."}) {
        EXPECT_THAT(checkPath(path), ElementsAre("error path-escape /files/1/targetPath")) << path;
        EXPECT_EQ(messagesFound().at(0),
                  "the path \"" + path + "\" names no file on the flash drive: let it end in the file's name");
    }
}

TEST_F(TargetPathRules, RefuseAPathThatAShellDoesNotTakeLiterally)
{
    EXPECT_THAT(checkPath("my files/site.cfg"), ElementsAre("error shell-character /files/1/targetPath"));
    EXPECT_EQ(messagesFound().at(0),
              "the path of a file for the flash drive must not have a blank: choose another one");
    EXPECT_THAT(checkPath("*"), ElementsAre("error shell-character /files/1/targetPath"));
}

TEST_F(TargetPathRules, WarnOfControlCharactersToo)
{
    EXPECT_THAT(checkPath("a\x01"), ElementsAre("error shell-character /files/1/targetPath",
                                                "warning control-character /files/1/targetPath"));
    EXPECT_EQ(messagesFound().at(1), "the path has the control character U+0001: leave it out");
    EXPECT_THAT(checkPath("a\xC2\x85"), ElementsAre("warning control-character /files/1/targetPath"));
}

TEST_F(TargetPathRules, FindAllThatIsWrongWithOnePath)
{
    EXPECT_THAT(checkPath("../a b"),
                ElementsAre("error path-escape /files/1/targetPath", "error shell-character /files/1/targetPath"));
}

TEST_F(TargetPathRules, TellWhichBoardObjectStatesThePath)
{
    applyEntry({{"boards",
                 {{{"boardType", "KR5120"}, {"targetPath", "good"}},
                  {{"boardType", "KR5121"}, {"targetPath", "../bad"}},
                  {{"boardType", "KR5122"}, {"targetPath", "a b"}}}}});
    EXPECT_THAT(check(), ElementsAre("error path-escape /files/1/boards/1/targetPath",
                                     "error shell-character /files/1/boards/2/targetPath"));
    EXPECT_EQ(inspector->getFinding(0).board, 1);
    EXPECT_EQ(inspector->getFinding(1).board, 2);
}

TEST_F(TargetPathRules, TellOfAPathOnceThatBoardObjectsShare)
{
    applyEntry({{"targetPath", "a b"}, {"boards", {{{"boardType", "KR5120"}}, {{"boardType", "KR5121"}}}}});
    EXPECT_THAT(check(), ElementsAre("error shell-character /files/1/targetPath"));
    EXPECT_EQ(inspector->getFinding(0).board, -1);
}

TEST_F(TargetPathRules, PassOverAPathThatIsNeverWritten)
{
    applyEntry({{"targetPath", "a b"},
                {"boards",
                 {{{"boardType", "KR5120"}, {"targetPath", "good"}},
                  {{"boardType", {"KR5120", "KR5120"}}, {"targetPath", "../bad"}}}}});
    EXPECT_THAT(check(), IsEmpty());
}
