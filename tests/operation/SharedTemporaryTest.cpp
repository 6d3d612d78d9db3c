// A temporary file whose place is that of a file which the update needs: one that it has written, or the one it copies.
#include <functional>

#include "operation/FlashDriveFixture.h"

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using namespace ZoNUpdateInventory;

class SharedTemporary : public FlashDriveFixture {
protected:
    void prepareFiles(const std::string& first, const std::string& second, unsigned phaseOfSecond = 1)
    {
        hasFlashDrive = true;
        addFileElement(1, 1, first, 1);
        addFileElement(1, 2, second, phaseOfSecond);
        prepare();
    }

    // Expects that only the first file is written, to `first`, and the second refused.
    void expectSecondRefused(const std::string& first, const std::string& second)
    {
        EXPECT_FALSE(update());

        EXPECT_THAT(journal->text(), HasSubstr("\n            ERROR: Cannot write /mnt/cn/cfdrive/" + second +
                                               ".tmp. Error code: 17\n"));
        EXPECT_EQ(element(0).updateState, FINISHED);
        EXPECT_EQ(element(1).updateState, FAILED);
        EXPECT_EQ(readText(drive() / first), "content of b1f1.bin");
    }
};

TEST_F(SharedTemporary, IsNotTakenFromTheFileOfAnotherEntryOfThePhase)
{
    prepareFiles("a.tmp", "a");
    expectSecondRefused("a.tmp", "a");
    EXPECT_THAT(onDrive(), ElementsAre("a.tmp"));
}

TEST_F(SharedTemporary, IsNotTakenFromTheFileOfAnEarlierPhase)
{
    prepareFiles("a.tmp", "a", 2);
    expectSecondRefused("a.tmp", "a");
    EXPECT_THAT(onDrive(), ElementsAre("a.tmp"));
}

class SharedTemporarySpelling : public SharedTemporary, public ::testing::WithParamInterface<const char*> {};

TEST_P(SharedTemporarySpelling, IsKnown)
{
    prepareFiles("d/a.tmp", GetParam());
    std::filesystem::create_symlink("d", drive() / "link");
    expectSecondRefused("d/a.tmp", GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, SharedTemporarySpelling,
                         ::testing::Values("./d/a", "d//a", "/d/a", "d/./a", "d/../d/a", "e/../d/a", "link/a"));

TEST_F(SharedTemporary, IsNotTakenFromAFileThatReplacedAnotherOfTheUpdate)
{
    addFileElement(2, 1, "a.tmp");
    prepareFiles("a.tmp", "a");
    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FINISHED, FINISHED, FAILED));
    EXPECT_EQ(readText(drive() / "a.tmp"), "content of b1f1.bin");
}

TEST_F(SharedTemporary, MayBecomeTheFileOfALaterEntry)
{
    prepareFiles("a", "a.tmp");

    EXPECT_TRUE(update());

    EXPECT_THAT(onDrive(), ElementsAre("a", "a.tmp"));
    EXPECT_EQ(readText(drive() / "a"), "content of b1f1.bin");
    EXPECT_EQ(readText(drive() / "a.tmp"), "content of b1f2.bin");
}

TEST_F(SharedTemporary, IsNotTakenFromTheFileOfAnElementThatIsNotUpdated)
{
    prepareFiles("a.tmp", "a");
    put(drive() / "a.tmp", "of an element");
    put(drive() / "a", "old");
    element(0).disabled = true;

    EXPECT_FALSE(update());

    EXPECT_EQ(element(1).writeError, "ERROR: Cannot write /mnt/cn/cfdrive/a.tmp. Error code: 17\n");
    EXPECT_EQ(readText(drive() / "a.tmp"), "of an element");
    EXPECT_EQ(readText(drive() / "a"), "old");
}

TEST_F(SharedTemporary, IsNotTakenFromAFileThatAnEarlierUpdateHasWritten)
{
    prepareFiles("a.tmp", "a");
    element(1).disabled = true;
    EXPECT_TRUE(update());

    element(0).disabled = true;
    element(1).disabled = false;
    EXPECT_FALSE(update());

    EXPECT_THAT(onDrive(), ElementsAre("a.tmp"));
    EXPECT_EQ(readText(drive() / "a.tmp"), "content of b1f1.bin");
}

TEST_F(SharedTemporary, IsNotTakenFromTheFileOfAnElementWithoutAnEntry)
{
    prepareFiles("a.tmp", "a");
    put(drive() / "a.tmp", "of an element");
    element(0).updateFileIndex = -1;
    file(0).jsonEntry = ZoNJson::json::object();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FAILED));
    EXPECT_EQ(readText(drive() / "a.tmp"), "of an element");
}

TEST_F(SharedTemporary, IsNotTakenFromTheFileOfAnElementThatAFilterLeavesOut)
{
    options.elementNames = "File 2";
    prepareFiles("a.tmp", "a");
    put(drive() / "a.tmp", "of an element");
    file(0).jsonEntry = ZoNJson::json::object();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED));
    EXPECT_EQ(readText(drive() / "a.tmp"), "of an element");
}

TEST_F(SharedTemporary, IsNotTakenFromTheFileOfAnEntryForABoardThatIsNotThere)
{
    addFile("x.bin", {{"boardType", "T9"}, {"targetPath", "a.tmp"}});
    addFile("y.bin",
            {{"boards", {{{"boardType", "T8"}, {"targetPath", "c"}}, {{"boardType", "T9"}, {"targetPath", "b.tmp"}}}}});
    prepareFiles("a", "b");
    put(drive() / "a.tmp", "of the entry");
    put(drive() / "b.tmp", "of the board object");

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(FAILED, FAILED));
    EXPECT_EQ(readText(drive() / "a.tmp"), "of the entry");
    EXPECT_EQ(readText(drive() / "b.tmp"), "of the board object");
}

TEST_P(SharedTemporarySpelling, OfAFileThatIsNotUpdatedIsKnown)
{
    prepareFiles(GetParam() + std::string(".tmp"), "d/a");
    put(drive() / "d/a.tmp", "of an element");
    std::filesystem::create_symlink("d", drive() / "link");
    std::filesystem::create_directory(drive() / "e");
    element(0).disabled = true;

    EXPECT_FALSE(update());

    EXPECT_EQ(element(1).writeError, "ERROR: Cannot write /mnt/cn/cfdrive/d/a.tmp. Error code: 17\n");
    EXPECT_EQ(readText(drive() / "d/a.tmp"), "of an element");
}

TEST_F(SharedTemporary, IsNotTakenFromAFileToWhichTheFileOfAnElementLinks)
{
    prepareFiles("b", "a");
    put(drive() / "a.tmp", "of an element");
    std::filesystem::create_symlink("a.tmp", drive() / "b");
    element(0).disabled = true;

    EXPECT_FALSE(update());

    EXPECT_EQ(readText(drive() / "b"), "of an element");
}

TEST_F(SharedTemporary, IsNotTakenFromALinkOnTheWayToTheFileOfAnElement)
{
    prepareFiles("a.tmp/b", "a");
    put(drive() / "d/b", "of an element");
    std::filesystem::create_symlink("d", drive() / "a.tmp");
    element(0).disabled = true;

    EXPECT_FALSE(update());

    EXPECT_EQ(element(1).writeError, "ERROR: Cannot write /mnt/cn/cfdrive/a.tmp. Error code: 17\n");
    EXPECT_EQ(readText(drive() / "a.tmp/b"), "of an element");
}

TEST_F(SharedTemporary, IsNotTakenFromALinkOnTheWayThatAnotherPathLeadsTo)
{
    prepareFiles("real/a.tmp/b", "alias/a");
    put(drive() / "d/b", "of an element");
    std::filesystem::create_directory(drive() / "real");
    std::filesystem::create_symlink("../d", drive() / "real/a.tmp");
    std::filesystem::create_symlink("real", drive() / "alias");
    element(0).disabled = true;

    EXPECT_FALSE(update());

    EXPECT_EQ(element(1).writeError, "ERROR: Cannot write /mnt/cn/cfdrive/alias/a.tmp. Error code: 17\n");
    EXPECT_EQ(readText(drive() / "real/a.tmp/b"), "of an element");
}

TEST_F(SharedTemporary, IsNotMadeForALinkOnTheWayToTheFileOfAnElement)
{
    prepareFiles("link/b", "link");
    put(drive() / "d/c", "another");
    std::filesystem::create_symlink("d", drive() / "link");

    expectSecondRefused("link/b", "link");
    EXPECT_THAT(onDrive(), ElementsAre("d/", "d/b", "d/c", "link/"));
}

TEST_F(SharedTemporary, IsMadeForALinkToAFolderOnTheWayToNoFile)
{
    prepareFiles("d/b", "link");
    std::filesystem::create_directory(drive() / "d");
    std::filesystem::create_symlink("d", drive() / "link");

    EXPECT_TRUE(update());

    EXPECT_THAT(onDrive(), ElementsAre("d/", "d/b", "link"));
    EXPECT_EQ(readText(drive() / "link"), "content of b1f2.bin");
}

TEST_F(SharedTemporary, IsRemovedWhereNoElementAndNoEntryNamesIt)
{
    prepareFiles("b", "a");
    put(drive() / "a.tmp", "abandoned");
    put(drive() / "b.tmp", "abandoned");

    EXPECT_TRUE(update());

    EXPECT_THAT(onDrive(), ElementsAre("a", "b"));
    EXPECT_EQ(readText(drive() / "a"), "content of b1f2.bin");
    EXPECT_EQ(readText(drive() / "b"), "content of b1f1.bin");
}

class SecondSpelling : public SharedTemporary, public ::testing::WithParamInterface<const char*> {};

TEST_P(SecondSpelling, OfAFileThatTheUpdateHasWrittenIsRefused)
{
    prepareFiles("d/a", GetParam());
    std::filesystem::create_directory(drive() / "d");
    std::filesystem::create_symlink("d", drive() / "link");

    expectSecondRefused("d/a", GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, SecondSpelling,
                         ::testing::Values("./d/a", "d//a", "/d/a", "d/./a", "d/../d/a", "e/../d/a", "link/a"));

namespace {

// What another process does while the second phase begins.
std::function<void()> meanwhile;

void actInTheSecondPhase(unsigned phase)
{
    if (phase == 1) {
        meanwhile();
    }
}

}  // namespace

TEST_F(SharedTemporary, IsMadeInPlaceOfAFileOfTheUpdateThatAnotherProcessHasMoved)
{
    prepareFiles("a", "b", 2);
    meanwhile = [&] { std::filesystem::rename(drive() / "a", drive() / "b"); };
    updater->setPhaseCallBack(actInTheSecondPhase);

    EXPECT_TRUE(update());

    EXPECT_THAT(onDrive(), ElementsAre("b"));
    EXPECT_EQ(readText(drive() / "b"), "content of b1f2.bin");
}

TEST_F(SharedTemporary, IsNotTakenFromAFileOfAnElementThatAnotherProcessHasReplaced)
{
    addFileElement(2, 1, "b.tmp");
    prepareFiles("a", "b", 2);
    put(drive() / "a.tmp", "abandoned");
    put(drive() / "b.tmp", "of an element");
    element(0).disabled = true;
    meanwhile = [&] {
        put(drive() / "new", "of an element, newer");
        std::filesystem::rename(drive() / "new", drive() / "b.tmp");
    };
    updater->setPhaseCallBack(actInTheSecondPhase);

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED, FAILED));
    EXPECT_EQ(readText(drive() / "b.tmp"), "of an element, newer");
}

TEST_F(SharedTemporary, IsNotTakenFromALinkThatAnotherProcessHasMadeOnTheWayToTheFileOfAnElement)
{
    addFileElement(2, 1, "b.tmp/c");
    prepareFiles("a", "b", 2);
    put(drive() / "a.tmp", "abandoned");
    element(0).disabled = true;
    meanwhile = [&] {
        put(drive() / "d/c", "of an element");
        std::filesystem::create_symlink("d", drive() / "b.tmp");
    };
    updater->setPhaseCallBack(actInTheSecondPhase);

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED, FAILED));
    EXPECT_EQ(readText(drive() / "b.tmp/c"), "of an element");
}

TEST_F(SharedTemporary, IsMadeInPlaceOfALinkOnTheWayToNoFileThatAnotherProcessHasMade)
{
    addFileElement(2, 1, "c.tmp/c");
    prepareFiles("a", "b", 2);
    put(drive() / "a.tmp", "abandoned");
    element(0).disabled = true;
    meanwhile = [&] {
        put(drive() / "d/c", "of no element");
        std::filesystem::create_symlink("d", drive() / "b.tmp");
    };
    updater->setPhaseCallBack(actInTheSecondPhase);

    EXPECT_TRUE(update());

    EXPECT_THAT(onDrive(), ElementsAre("a", "b", "d/", "d/c"));
    EXPECT_EQ(readText(drive() / "b"), "content of b1f2.bin");
}

TEST_F(SharedTemporary, MayBeThatOfTheVerySamePathTwice)
{
    hasFlashDrive = true;
    addFileElement(1, 1, "d/a");
    addFileElement(2, 1, "d/a");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(onDrive(), ElementsAre("d/", "d/a"));
    EXPECT_EQ(readText(drive() / "d/a"), "content of b2f1.bin");
}

TEST_F(SharedTemporary, IsNotTheFileThatIsToBeCopied)
{
    prepareDrive();
    put(drive() / "c.bin.tmp", "part of an archive on the drive");
    ZoNTrellanUpdater::ZoTOptions other = options;
    other.archivePath = "/mnt/cn/cfdrive";
    OpenUpdater otherUpdater(other);
    ZoNUpdateArchive::ZoSUpdateFile file;
    file.name = "c.bin.tmp";

    EXPECT_FALSE(otherUpdater.getOperation().writeFileSystemElement(file, "c.bin", messages));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 17\n"));
    EXPECT_THAT(onDrive(), ElementsAre("c.bin.tmp"));
    EXPECT_EQ(readText(drive() / "c.bin.tmp"), "part of an archive on the drive");
}

TEST_F(SharedTemporary, IsNotAnotherFileOfAnArchiveOnTheDrive)
{
    prepareDrive();
    put(drive() / "c.bin.tmp", "of the archive");
    put(drive() / "d.bin", "to be copied");
    ZoNTrellanUpdater::ZoTOptions other = options;
    other.archivePath = "/mnt/cn/cfdrive";
    OpenUpdater otherUpdater(other);
    otherUpdater.getArchive().getUpdateFileList().emplace_back().name = "c.bin.tmp";
    ZoNUpdateArchive::ZoSUpdateFile file;
    file.name = "d.bin";

    EXPECT_FALSE(otherUpdater.getOperation().writeFileSystemElement(file, "c.bin", messages));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 17\n"));
    EXPECT_EQ(readText(drive() / "c.bin.tmp"), "of the archive");
}
