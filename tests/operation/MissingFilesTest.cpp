// Update files that are described in the archive but missing from its folder.
#include <filesystem>

#include "operation/OperationFixture.h"
#include "support/Namespaces.h"

using ::testing::_;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

using MissingFiles = OperationFixture;

TEST_F(MissingFiles, LeavesAnElementOutWhoseFileIsMissing)
{
    addElement(1, 1);
    addElement(1, 2);
    missingFiles = {"b1e1.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->events().at(1),
              "\nBoard 1, SN 1, Element 1 cannot be updated. Update file b1e1.bin not found!\n");
    EXPECT_THAT(journal->reports(), ElementsAre("phase 0", "progress 100", "progress 100", "end of phases"));
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED));
    EXPECT_TRUE(file(0).fileMissing);
    EXPECT_FALSE(file(1).fileMissing);
    ASSERT_EQ(calls("update2").size(), 1u);
    EXPECT_EQ(calls("update2")[0].at("id"), 2);
}

TEST_F(MissingFiles, PrintsNothingElseForAPhaseWithoutAnyFile)
{
    options.noProgress = false;
    addElement(1, 1);
    addElement(1, 2);
    missingFiles = {"b1e1.bin", "b1e2.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->events(), ElementsAre("<phase 0>", HasSubstr("b1e1.bin"), HasSubstr("b1e2.bin"),
                                               "<end of phases>", _, _));  // the results follow
    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
}

TEST_F(MissingFiles, RemembersAMissingFileOfAnEarlierPhase)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    missingFiles = {"b1e1.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, FINISHED));
}

TEST_F(MissingFiles, ChecksEveryPhase)
{
    addElement(1, 1, 1);
    addElement(1, 2, 2);
    missingFiles = {"b1e1.bin", "b1e2.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->events(), ElementsAre("<phase 0>", HasSubstr("b1e1.bin"), "<phase 1>", HasSubstr("b1e2.bin"),
                                               "<end of phases>", _, _));
}

TEST_F(MissingFiles, NamesAMissingFileOfTheFlashDriveToo)
{
    SKIP_WITHOUT_MOUNT();
    hasFlashDrive = true;
    addFileElement(1, 1, "a/c.bin");
    missingFiles = {"b1f1.bin"};
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->fragments(), ElementsAre(AllOf(HasSubstr("File 1"), HasSubstr("b1f1.bin")), _, _));
    EXPECT_TRUE(std::filesystem::is_empty(drive()));
}

TEST_F(MissingFiles, NamesAMissingFileForEachOfItsElements)
{
    addElement(1, 1);
    addElement(2, 1);
    missingFiles = {"b1e1.bin"};
    prepare();
    element(1).updateFileIndex = 0;

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->fragments(), ElementsAre(AllOf(HasSubstr("Board 1"), HasSubstr("b1e1.bin")),
                                                  AllOf(HasSubstr("Board 2"), HasSubstr("b1e1.bin")), _, _));
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO, NOTHING_TO_DO));
}

TEST_F(MissingFiles, TakesALinkThatLeadsNowhereForMissing)
{
    addElement(1, 1);
    missingFiles = {"b1e1.bin"};
    prepare();
    std::filesystem::create_symlink("nowhere.bin", std::filesystem::path(archive->path()) / "b1e1.bin");

    EXPECT_FALSE(update());

    EXPECT_TRUE(file(0).fileMissing);
    EXPECT_THAT(states(), ElementsAre(NOTHING_TO_DO));
}

TEST_F(MissingFiles, FindsNothingMissingInACompleteArchive)
{
    addElement(1, 1);
    prepare();
    ASSERT_TRUE(update());
    journal->clear();
    element(0).updateState = PENDING;
    PhaseList list = {&element(0)};

    EXPECT_FALSE(operation().checkMissingUpdateFiles(list));

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_THAT(states(), ElementsAre(PENDING));
    EXPECT_FALSE(file(0).fileMissing);
}

TEST_F(MissingFiles, FindsNothingMissingInAnEmptyList)
{
    prepare();
    PhaseList list;

    EXPECT_FALSE(operation().checkMissingUpdateFiles(list));

    EXPECT_THAT(journal->events(), IsEmpty());
}
