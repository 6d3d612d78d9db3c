// An update that a host asks for in a callback of a running one: it is refused, and the running one goes on
// undisturbed.
#include "operation/OperationTest.h"

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

// The callbacks carry no context: whom they ask, and what they were answered.
ZoCUpdateOperation* askedOperation = nullptr;
ZoCErrorListPool* askedErrors = nullptr;
std::vector<bool> answers;
bool isAsking = false;

void askForUpdate(unsigned)
{
    if (!isAsking) {
        isAsking = true;
        answers.push_back(askedOperation->update(*askedErrors));
        isAsking = false;
    }
}

void askForUpdateAtText(const std::string&)
{
    askForUpdate(0);
}

}  // namespace

class NestedUpdateTest : public OperationTest {
protected:
    // A board whose first update fails, so that the others are cancelled, and one that is updated.
    void prepareBoards()
    {
        scriptOf(1, 1)["polls"] = Json::array({{{"status", 3}}});
        addElement(1, 1, 1);
        addElement(1, 2, 2);
        addElement(1, 3, 3);
        addElement(2, 1, 2);
        prepareCallbacks();
    }

    void prepareCallbacks()
    {
        prepare();
        askedOperation = &operation();
        askedErrors = &nestedErrors.get();
        answers.clear();
    }

    void expectUndisturbedUpdate()
    {
        EXPECT_FALSE(update());

        EXPECT_THAT(answers, AllOf(Not(IsEmpty()), Each(false)));
        EXPECT_EQ(nestedErrors.count(), 0u);
        EXPECT_THAT(states(), ElementsAre(3u, 4u, 4u, 5u));
        EXPECT_THAT(callNames(), ElementsAre("lock",                                                               //
                                             "sendLog", "update2", "usleep", "updateStatus2", "usleep", "usleep",  //
                                             "sendLog", "update2", "usleep", "updateStatus2", "usleep", "usleep",
                                             "updateErrors2",  //
                                             "unlock"));
    }

    ErrorPool nestedErrors;
};

TEST_F(NestedUpdateTest, IsRefusedWhenAnUpdateFails)
{
    prepareBoards();
    updater->setFailureCallBack(askForUpdate);
    expectUndisturbedUpdate();
    EXPECT_EQ(answers.size(), 3u);
}

TEST_F(NestedUpdateTest, IsRefusedWhenAPhaseBegins)
{
    prepareBoards();
    updater->setPhaseCallBack(askForUpdate);
    expectUndisturbedUpdate();
    EXPECT_EQ(answers.size(), 4u);
}

TEST_F(NestedUpdateTest, IsRefusedWhenProgressIsMade)
{
    prepareBoards();
    updater->setProgressCallBack(askForUpdate);
    expectUndisturbedUpdate();
    EXPECT_EQ(answers.size(), 4u);
}

TEST_F(NestedUpdateTest, IsRefusedAtAnyTextUpToTheResults)
{
    prepareBoards();
    updater->setMessageCallBack(askForUpdateAtText);
    expectUndisturbedUpdate();
    EXPECT_EQ(answers.size(), 17u);
}

TEST_F(NestedUpdateTest, IsRefusedWhenTheTargetCannotBeLocked)
{
    options.verbose = true;
    script["lock"] = Json::array({failing(5, "occupied")});
    addElement(1, 1);
    prepareCallbacks();
    updater->setMessageCallBack(askForUpdateAtText);

    EXPECT_FALSE(update());

    EXPECT_THAT(answers, ElementsAre(false));
    EXPECT_THAT(callNames(), ElementsAre("lock"));
    EXPECT_THAT(states(), ElementsAre(1u));
}

TEST_F(NestedUpdateTest, IsAcceptedOnceTheUpdateHasEnded)
{
    prepareBoards();
    updater->setFailureCallBack(askForUpdate);
    ASSERT_FALSE(update());
    updater->setFailureCallBack(nullptr);

    update();

    EXPECT_EQ(calls("lock").size(), 2u);
    EXPECT_EQ(calls("unlock").size(), 2u);
}
