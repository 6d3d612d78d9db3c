// The notices before an update: elements that need no update and elements without a file.
#include "assignment/AssignmentFixture.h"

namespace {

class Notices : public AssignmentFixture {
protected:
    // Up to date, outdated, without a file, up to date, without a file, disabled without a file.
    void fill()
    {
        addFileForId(1, {{"version", "1.0"}});
        addElement({.id = 1, .version = "1.0"});
        addElement({.id = 1, .version = "0.9"});
        addElement({.id = 2});
        addElement({.id = 1, .version = "1.0"});
        addElement({.id = 3});
        addElement({.id = 4}).disabled = true;
        assignment().makeAssignment();
    }

    std::string notRequired()
    {
        assignment().printNotRequiredUpdates();
        return printed();
    }

    std::string unsupported()
    {
        assignment().printUnsupportedUpdateElements();
        return printed();
    }
};

TEST_F(Notices, TheAssignmentItselfPrintsNothing)
{
    fill();
    EXPECT_EQ(printed(), "");
}

TEST_F(Notices, ElementsThatNeedNoUpdateAreListed)
{
    fill();
    EXPECT_EQ(notRequired(),
              "\n"
              "No update is required for these elements:\n"
              "        Element 0\n"
              "        Element 3\n");
}

TEST_F(Notices, ALineIsOnePieceOfText)
{
    fill();
    assignment().printNotRequiredUpdates();
    EXPECT_EQ(printedFragments(), (std::vector<std::string>{"\nNo update is required for these elements:\n",
                                                            "        Element 0\n", "        Element 3\n"}));
    assignment().printUnsupportedUpdateElements();
    EXPECT_EQ(printedFragments(), (std::vector<std::string>{"\nUnsupported update elements (will be ignored):\n",
                                                            "        Element 2\n", "        Element 4\n", "\n"}));
}

TEST_F(Notices, AMarkedElementThatHasNoFileIsNotListed)
{
    addElement().notRequired = true;
    EXPECT_EQ(notRequired(), "");
}

TEST_F(Notices, WithForceNothingIsSaidOfThem)
{
    options.force = true;
    fill();
    EXPECT_TRUE(elements().front().notRequired);
    EXPECT_EQ(notRequired(), "");
}

TEST_F(Notices, WithForceNothingIsSaidOfUpgradesEither)
{
    options.force = true;
    addFileForId(1, {{"version", "1.0"}, {"mode", "upgrade"}});
    addElement({.version = "1.0"});
    assignment().makeAssignment();
    EXPECT_TRUE(elements().front().disabled);
    EXPECT_EQ(notRequired(), "");
}

TEST_F(Notices, WithoutSuchElementsThereIsNoNotice)
{
    addFileForId(1, {{"version", "1.0"}});
    addElement({.version = "0.9"});
    assignment().makeAssignment();
    EXPECT_EQ(notRequired(), "");
    EXPECT_EQ(unsupported(), "");
}

TEST_F(Notices, ElementsWithoutAFileAreListedUnlessDisabled)
{
    fill();
    EXPECT_EQ(unsupported(),
              "\n"
              "Unsupported update elements (will be ignored):\n"
              "        Element 2\n"
              "        Element 4\n"
              "\n");
}

TEST_F(Notices, ForceDoesNotSilenceUnsupportedElements)
{
    options.force = true;
    addElement();
    assignment().makeAssignment();
    EXPECT_EQ(unsupported(),
              "\n"
              "Unsupported update elements (will be ignored):\n"
              "        Element 0\n"
              "\n");
}

TEST_F(Notices, ElementsThatTheHostDisabledAfterwardsAreNotListedAsUnsupported)
{
    addElement();
    assignment().makeAssignment();
    elements().front().disabled = true;
    EXPECT_EQ(unsupported(), "");
}

TEST_F(Notices, APercentSignInANameIsPrintedAsItIs)
{
    addElement().displayName = ZoCString("100 %s");
    assignment().makeAssignment();
    EXPECT_EQ(unsupported(), "\nUnsupported update elements (will be ignored):\n        100 %s\n\n");
}

}  // namespace
