// Starting the update of a file on the flash drive, which is finished at once.
#include "operation/OperationFixture.h"
#include "support/Namespaces.h"

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class FileStart : public OperationFixture {
protected:
    // Makes the update of a single file on the flash drive.
    void updateOneFile()
    {
        hasFlashDrive = true;
        addFileElement(1, 1, "c.bin");
        prepare();
        EXPECT_TRUE(update());
    }
};

TEST_F(FileStart, LogsTheStartOfAFileOnTheFlashDriveToo)
{
    SKIP_WITHOUT_MOUNT();
    updateOneFile();

    ASSERT_EQ(calls("sendLog").size(), 1u);
    EXPECT_EQ(calls("sendLog")[0].at("code"), 0x26500000);
    EXPECT_EQ(calls("sendLog")[0].at("line"), 504);
    EXPECT_EQ(calls("sendLog")[0].at("function"), "startUpdatesOfPhase");
    EXPECT_EQ(calls("sendLog")[0].at("text"), "Firmware update: Board 1, SN 1, File 1...");
}

TEST_F(FileStart, DoesNotWaitAfterAFileOnTheFlashDrive)
{
    SKIP_WITHOUT_MOUNT();
    updateOneFile();

    ASSERT_EQ(calls("usleep").size(), 1u);
    EXPECT_EQ(calls("usleep")[0].at("microseconds"), 200000);
}

TEST_F(FileStart, FinishesAFileOnTheFlashDriveAtOnce)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "a/c.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->events(), ElementsAre("<phase 0>", _, HasSubstr("File 1"), _, "\n",  //
                                               "<progress 100>", "[OK]\n", "<end of phases>", _, _));
    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_THAT(callNames(), ElementsAre("lock", "sendLog", "syncFileSystem", "usleep", "unlock"));
}

TEST_F(FileStart, TellsInVerboseModeWhatWasWritten)
{
    options.verbose = true;
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "a/c.bin");
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(journal->text(), HasSubstr("\n            Directory /mnt/cn/cfdrive/a created.\n"
                                           "            Successfully written /mnt/cn/cfdrive/a/c.bin.\n"));
}

TEST_F(FileStart, TellsWhyAFileCouldNotBeWritten)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "c.bin");
    addFileElement(1, 2, "d.bin");
    contents["b1f1.bin"] = "";
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->events(), ElementsAre("<phase 0>", _, HasSubstr("File 1"), _, "[ERROR]\n", "<failure 0>",
                                               "            ERROR: Writing /mnt/cn/cfdrive/c.bin.tmp failed.\n",
                                               HasSubstr("File 2"), _, "\n",  //
                                               "<progress 100>", "[ERROR]\n", "<end of phases>", _, _, _));
    EXPECT_THAT(states(), ElementsAre(FAILED, FINISHED));
}
