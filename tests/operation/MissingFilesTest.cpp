// Update files that are described in the archive but missing from its folder.
#include <filesystem>

#include "operation/OperationTest.h"
#include "support/Namespaces.h"

using ::testing::ElementsAre;

using MissingFilesTest = OperationTest;

TEST_F(MissingFilesTest, LeavesAnElementOutWhoseFileIsMissing)
{
    addElement(1, 1);
    addElement(1, 2);
    missingFiles = {"b1e1.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
    EXPECT_THAT(states(), ElementsAre(0u, 5u));
    EXPECT_TRUE(file(0).fileMissing);
    EXPECT_FALSE(file(1).fileMissing);
    ASSERT_EQ(calls("update2").size(), 1u);
    EXPECT_EQ(calls("update2")[0].at("id"), 2);
}

TEST_F(MissingFilesTest, PrintsNothingElseForAPhaseWithoutAnyFile)
{
    options.noProgress = false;
    addElement(1, 1);
    addElement(1, 2);
    missingFiles = {"b1e1.bin", "b1e2.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nBoard 1, SN 1, Element 2 cannot be updated. Update file b1e2.bin not found!\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
}

TEST_F(MissingFilesTest, RemembersAMissingFileOfAnEarlierPhase)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    missingFiles = {"b1e1.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "<phase 1>"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        \n"
              "<progress 100><progress 100>"
              "[OK]\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
}

TEST_F(MissingFilesTest, ChecksEveryPhase)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    missingFiles = {"b1e1.bin", "b1e2.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(),
              "<phase 0>"
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "<phase 1>"
              "\nBoard 1, SN 1, Element 2 cannot be updated. Update file b1e2.bin not found!\n"
              "<phase 4294967295>"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
}

TEST_F(MissingFilesTest, NamesAMissingFileOfTheFlashDriveToo)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "a/c.bin");
    missingFiles = {"b1f1.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->text(),
              "\nBoard 1, SN 1, File 1 cannot be updated. Update file b1f1.bin not found!\n"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
    EXPECT_TRUE(std::filesystem::is_empty(drive()));
}

TEST_F(MissingFilesTest, NamesAMissingFileForEachOfItsElements)
{
    addElement(1, 1);
    addElement(2, 1);
    missingFiles = {"b1e1.bin"};
    prepare();
    element(1).updateFileIndex = 0;

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->text(),
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nBoard 2, SN 2, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
    EXPECT_THAT(states(), ElementsAre(0u, 0u));
}

TEST_F(MissingFilesTest, TakesALinkThatLeadsNowhereForMissing)
{
    addElement(1, 1);
    missingFiles = {"b1e1.bin"};
    prepare();
    std::filesystem::create_symlink("nowhere.bin", std::filesystem::path(archive->path()) / "b1e1.bin");

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->text(),
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
}

TEST_F(MissingFilesTest, SpeaksOfFailureWhenAnotherUpdateFailed)
{
    addElement(1, 1);
    addElement(1, 2);
    missingFiles = {"b1e1.bin"};
    scriptOf(1, 2)["start"] = Json::array({failing(4, "no room")});
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->text(),
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nUpdating:\n"
              "        Board 1, SN 1, Element 2                        [ERROR]\n"
              "[ERROR]\n"
              "\nResults:\n"
              "    ERROR: Board 1, SN 1, Element 2:\n"
              "       ERROR 0x4 (reported by Host PC):\n"
              "         no room\n"
              "\n    Update failed!\n");
}

TEST_F(MissingFilesTest, FailsTheRunWithoutReportedErrors)
{
    addElement(1, 1);
    missingFiles = {"b1e1.bin"};
    prepare();

    EXPECT_EQ(updater->run(), 0);

    EXPECT_EQ(journal->text(),
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n"
              "\nResults:\n"
              "\n    Update incomplete due to missing files in the source folder!\n");
}

TEST_F(MissingFilesTest, FindsNothingMissingInACompleteArchive)
{
    addElement(1, 1);
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    element(0).updateState = 1;
    PhaseList list = {&element(0)};

    EXPECT_FALSE(operation().checkMissingUpdateFiles(list));

    EXPECT_EQ(journal->told(), "");
    EXPECT_THAT(states(), ElementsAre(1u));
    EXPECT_FALSE(file(0).fileMissing);
}

TEST_F(MissingFilesTest, FindsNothingMissingInAnEmptyList)
{
    prepare();
    PhaseList list;

    EXPECT_FALSE(operation().checkMissingUpdateFiles(list));

    EXPECT_EQ(journal->told(), "");
}
