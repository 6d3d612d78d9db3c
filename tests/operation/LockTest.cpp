// Locking and unlocking the target.
#include <stdexcept>

#include "operation/OperationFixture.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using Lock = OperationFixture;

TEST_F(Lock, LocksTheWholeTargetOnceAndUsesItsHandleThroughout)
{
    addHcn();
    addCn();
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    ASSERT_EQ(calls("lock").size(), 1u);
    const Json lock = calls("lock")[0];
    EXPECT_EQ(lock.at("argument"), 65539);
    const unsigned handle = lock.at("handle");
    EXPECT_NE(handle, 0u);
    for (const char* name : {"update2", "updateErrors2", "updateFinish", "unlock"}) {
        ASSERT_FALSE(calls(name).empty()) << name;
        for (const Json& call : calls(name)) {
            EXPECT_EQ(call.at("handle"), handle) << name;
        }
    }
}

TEST_F(Lock, TellsTheCnBeforeTheHcnThatTheUpdateHasEnded)
{
    addHcn();
    addCn();
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(callNames(), ElementsAre("lock", "updateFinish", "updateFinish", "unlock"));
    ASSERT_EQ(calls("updateFinish").size(), 2u);
    EXPECT_EQ(calls("updateFinish")[0].at("node"), "/ROOT/CN");
    EXPECT_EQ(calls("updateFinish")[1].at("node"), "/ROOT/HCN");
}

TEST_F(Lock, TellsTheOnlyNodeThatThereIs)
{
    addHcn();
    prepare();

    EXPECT_TRUE(update());

    ASSERT_EQ(calls("updateFinish").size(), 1u);
    EXPECT_EQ(calls("updateFinish")[0].at("node"), "/ROOT/HCN");
}

TEST_F(Lock, TellsNobodyOnATargetWithoutNodes)
{
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
}

TEST_F(Lock, EndsAtOnceWhenItCannotLock)
{
    script["lock"] = Json::array({failing(5, "occupied")});
    addHcn();
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_THAT(callNames(), ElementsAre("lock"));
    EXPECT_THAT(states(), ElementsAre(PENDING));
    EXPECT_THAT(listed(errors), ElementsAre("5 occupied"));
}

TEST_F(Lock, SaysInVerboseModeThatItCannotLock)
{
    options.verbose = true;
    script["lock"] = Json::array({failing(5, "occupied")});
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    EXPECT_EQ(journal->told(), "ERROR: Cannot lock local system!\n");
}

TEST_F(Lock, LocksDespiteErrorsFromBefore)
{
    prepare();
    ZoSErrorRecord before;
    before.code = 9;
    before.text = "from before";
    errors.get().addError(before);

    EXPECT_TRUE(operation().lockInventory(errors));

    EXPECT_EQ(errors.count(), 1u);
    EXPECT_TRUE(operation().unlockInventory(errors));
    EXPECT_THAT(journal->events(), IsEmpty());
}

TEST_F(Lock, LocksAgainOnceTheTargetIsFree)
{
    script["lock"] = Json::array({failing(5, "occupied"), Json::object()});
    prepare();

    EXPECT_FALSE(operation().lockInventory(errors));
    EXPECT_TRUE(operation().lockInventory(errors));
    EXPECT_TRUE(operation().unlockInventory(errors));
}

TEST_F(Lock, KeepsTheOutcomeWhenItCannotUnlock)
{
    script["unlock"] = Json::array({failing(3, "busy")});
    addElement(1, 1);
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(states(), ElementsAre(FINISHED));
    EXPECT_THAT(listed(errors), ElementsAre("3 busy"));
}

TEST_F(Lock, SaysInVerboseModeThatItCannotUnlock)
{
    options.verbose = true;
    script["unlock"] = Json::array({failing(3, "busy")});
    prepare();
    ASSERT_TRUE(operation().lockInventory(errors));

    EXPECT_FALSE(operation().unlockInventory(errors));

    EXPECT_EQ(journal->told(), "ERROR: Cannot unlock target system!\n");
}

TEST_F(Lock, SaysNothingOtherwiseWhenItCannotUnlock)
{
    script["unlock"] = Json::array({failing(3, "busy")});
    prepare();
    ASSERT_TRUE(operation().lockInventory(errors));

    EXPECT_FALSE(operation().unlockInventory(errors));

    EXPECT_THAT(journal->events(), IsEmpty());
}

TEST_F(Lock, KeepsTheHandleWhenItCannotUnlock)
{
    script["unlock"] = Json::array({failing(3, "busy")});
    prepare();
    ASSERT_TRUE(operation().lockInventory(errors));

    EXPECT_FALSE(operation().unlockInventory(errors));
    operation().unlockInventory(errors);

    const unsigned handle = calls("lock").at(0).at("handle");
    ASSERT_EQ(calls("unlock").size(), 2u);
    EXPECT_EQ(calls("unlock")[0].at("handle"), handle);
    EXPECT_EQ(calls("unlock")[1].at("handle"), handle);
}

TEST_F(Lock, ForgetsTheHandleOnceItHasUnlocked)
{
    prepare();
    ASSERT_TRUE(operation().lockInventory(errors));

    EXPECT_TRUE(operation().unlockInventory(errors));
    operation().unlockInventory(errors);

    ASSERT_EQ(calls("unlock").size(), 2u);
    EXPECT_NE(calls("unlock")[0].at("handle"), 0);
    EXPECT_EQ(calls("unlock")[1].at("handle"), 0);
}

TEST_F(Lock, DoesNotTakeErrorsOfTheNodesForAFailedUnlock)
{
    options.verbose = true;
    script["updateFinish"] = Json::array({failing(6, "CN is busy"), failing(7, "HCN is busy")});
    addHcn();
    addCn();
    prepare();
    ASSERT_TRUE(operation().lockInventory(errors));
    journal->clear();

    EXPECT_TRUE(operation().unlockInventory(errors));

    EXPECT_THAT(journal->events(), IsEmpty());
    EXPECT_THAT(listed(errors), ElementsAre("6 CN is busy", "7 HCN is busy"));
    EXPECT_EQ(calls("unlock").size(), 1u);
}

TEST_F(Lock, SucceedsWithErrorsOfTheNodesButReportsThem)
{
    script["updateFinish"] = Json::array({failing(6, "CN is busy")});
    addCn();
    prepare();

    EXPECT_TRUE(update());

    EXPECT_THAT(listed(errors), ElementsAre("6 CN is busy"));
}

TEST_F(Lock, UnlocksAfterAFailedUpdate)
{
    letStartFail(1, 1);
    addElement(1, 1);
    prepare();

    EXPECT_FALSE(update());

    ASSERT_THAT(callNames(), Not(IsEmpty()));
    ASSERT_EQ(callNames().back(), "unlock");
    EXPECT_EQ(calls("unlock")[0].value("errors", 0), 0);
    EXPECT_THAT(calls("update2"), ::testing::SizeIs(1));
    EXPECT_THAT(calls("updateStatus2"), IsEmpty());
}

namespace {

void throwAtAnyPhase(unsigned)
{
    throw std::runtime_error("the host has failed");
}

}  // namespace

TEST_F(Lock, UnlocksTheTargetWhenTheHostThrows)
{
    addElement(1, 1);
    prepare();
    updater->setPhaseCallBack(throwAtAnyPhase);

    EXPECT_THROW(update(), std::runtime_error);

    EXPECT_THAT(callNames(), ElementsAre("lock", "unlock"));
    updater->setPhaseCallBack(nullptr);
    EXPECT_TRUE(update());
}
