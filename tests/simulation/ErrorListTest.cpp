#include <gtest/gtest.h>

#include <stdexcept>

#include "allocations/Allocations.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"
#include "support/ErrorPool.h"

namespace {

ZoSErrorRecord error(unsigned code, const std::string& text)
{
    ZoSErrorRecord record;
    record.code = code;
    record.text = text;
    return record;
}

}  // namespace

TEST(ErrorList, IsEmptyAtFirst)
{
    ErrorPool errors;
    EXPECT_EQ(errors.count(), 0u);
}

TEST(ErrorList, TakesNoMoreThanItsOwnObjectAsLongAsItIsEmpty)
{
    const ErrorPool first;  // what is kept of the lists altogether is there
    ZoCErrorList* list = nullptr;
    const auto make = [&] { list = ZoCErrorManager::getSingleton()->createErrorList(0, 1, 20, 5, 300); };
    EXPECT_LE(bytesOf(make), sizeof(ZoCErrorList));
    EXPECT_EQ(list->getErrorCount(), 0u);
    list->clear();
    EXPECT_THROW(list->getErrorCode(0), std::out_of_range);
    ZoCErrorManager::getSingleton()->deleteErrorList(list);
}

TEST(ErrorList, KeepsEveryPartOfAnError)
{
    ErrorPool errors;
    errors.get().addError({16777232, 0x26300001, 123456789012, 7, 8, "scan", 42, "Parameter A of B does not exist."});
    EXPECT_EQ(errors.get().getOriginNode(0), 16777232u);
    EXPECT_EQ(errors.get().getErrorCode(0), 0x26300001u);
    EXPECT_EQ(errors.get().getTimeStamp(0), 123456789012u);
    EXPECT_EQ(errors.get().getMainModuleNumber(0), 7u);
    EXPECT_EQ(errors.get().getSubModuleNumber(0), 8u);
    EXPECT_STREQ(errors.get().getFunctionName(0), "scan");
    EXPECT_EQ(errors.get().getLineNumber(0), 42u);
    EXPECT_STREQ(errors.get().getErrorText(0), "Parameter A of B does not exist.");
}

TEST(ErrorList, GivesEmptyTextsRatherThanNull)
{
    ErrorPool errors;
    errors.get().addError(ZoSErrorRecord{});
    EXPECT_STREQ(errors.get().getFunctionName(0), "");
    EXPECT_STREQ(errors.get().getErrorText(0), "");
}

TEST(ErrorList, KeepsAllErrorsInTheirOrder)
{
    ErrorPool errors;
    for (unsigned code = 0; code < 1000; ++code) {
        errors.get().addError(error(code, "number " + std::to_string(code)));
    }
    ASSERT_EQ(errors.count(), 1000u);
    for (unsigned index = 0; index < 1000; ++index) {
        EXPECT_EQ(errors.code(index), index);
        EXPECT_EQ(errors.text(index), "number " + std::to_string(index));
    }
}

TEST(ErrorList, LeavesItsTextsWhereTheyAreWhenItGrows)
{
    ErrorPool errors;
    errors.get().addError(error(1, "first"));
    const char* text = errors.get().getErrorText(0);
    for (unsigned code = 0; code < 1000; ++code) {
        errors.get().addError(error(code, "another"));
    }
    EXPECT_STREQ(text, "first");
    EXPECT_EQ(text, errors.get().getErrorText(0));
}

TEST(ErrorList, TakesCopiesOfAnothersErrors)
{
    ErrorPool errors;
    errors.get().addError(error(1, "own"));
    {
        ErrorPool others;
        others.get().addError(error(2, "second"));
        others.get().addError(error(3, "third"));
        errors.get() += others.get();
        EXPECT_EQ(others.count(), 2u);
    }
    ASSERT_EQ(errors.count(), 3u);
    EXPECT_EQ(errors.text(0), "own");
    EXPECT_EQ(errors.text(1), "second");
    EXPECT_EQ(errors.text(2), "third");
}

TEST(ErrorList, CanBeAppendedToItself)
{
    ErrorPool errors;
    errors.get().addError(error(1, "first"));
    errors.get().addError(error(2, "second"));
    errors.get() += errors.get();
    ASSERT_EQ(errors.count(), 4u);
    EXPECT_EQ(errors.text(2), "first");
    EXPECT_EQ(errors.text(3), "second");
}

TEST(ErrorList, IsEmptyAfterClearing)
{
    ErrorPool errors;
    errors.get().addError(error(1, "first"));
    errors.get().clear();
    EXPECT_EQ(errors.count(), 0u);
    errors.get().addError(error(2, "second"));
    EXPECT_EQ(errors.text(0), "second");
}

TEST(ErrorList, RefusesAnIndexBeyondItsErrors)
{
    ErrorPool errors;
    EXPECT_THROW(errors.get().getErrorCode(0), std::out_of_range);
}

TEST(ErrorManager, IsOneForTheProcess)
{
    ZoCErrorManager* manager = ZoCErrorManager::getSingleton();
    ASSERT_NE(manager, nullptr);
    EXPECT_EQ(ZoCErrorManager::getSingleton(), manager);
    EXPECT_EQ(ZoCErrorManager::s_pErrorManager, manager);
}

TEST(ErrorManager, HasOneMasterErrorList)
{
    ZoCErrorListPool& master = ZoCErrorManager::getSingleton()->getMasterErrorList();
    const unsigned before = master.getErrorCount();
    master.addError(error(5, "verify"));
    EXPECT_EQ(ZoCErrorManager::getSingleton()->getMasterErrorList().getErrorCount(), before + 1);
    master.clear();
}

TEST(ErrorManager, MakesListsThatAreIndependentOfEachOther)
{
    ErrorPool one;
    ErrorPool other;
    const unsigned inMaster = ZoCErrorManager::getSingleton()->getMasterErrorList().getErrorCount();
    one.get().addError(error(1, "one"));
    EXPECT_EQ(other.count(), 0u);
    EXPECT_EQ(ZoCErrorManager::getSingleton()->getMasterErrorList().getErrorCount(), inMaster);
}

TEST(ErrorManager, DropsNoErrorOfASmallList)
{
    ZoCErrorManager& manager = *ZoCErrorManager::getSingleton();
    ZoCErrorList* list = manager.createErrorList(0, 1, 1, 0, 3);
    list->addError(error(1, "longer than three bytes"));
    list->addError(error(2, "more than one error"));
    ASSERT_EQ(list->getErrorCount(), 2u);
    EXPECT_STREQ(list->getErrorText(0), "longer than three bytes");
    manager.deleteErrorList(list);
}

TEST(ErrorManager, CountsTheListsThatWereNotGivenBack)
{
    ZoCErrorManager& manager = *ZoCErrorManager::getSingleton();
    const int before = TrellanSimulation::resources().errorLists;
    ZoCErrorList* list = manager.createErrorList(0, 1, 20, 5, 300);
    EXPECT_EQ(TrellanSimulation::resources().errorLists, before + 1);
    manager.deleteErrorList(list);
    EXPECT_EQ(TrellanSimulation::resources().errorLists, before);
    manager.deleteErrorList(nullptr);
    EXPECT_EQ(TrellanSimulation::resources().errorLists, before);
}

TEST(ErrorManager, CountsTimeStampsInMilliseconds)
{
    EXPECT_EQ(ZoCErrorManager::getSingleton()->getTimeStampFactor(), 0.001);
}
