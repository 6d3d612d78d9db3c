// Creating and releasing an updater: options, callbacks, constants, and the order of the virtual operations.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "Updating.h"
#include "simulation/base/Resources.h"
#include "support/Slots.h"

using namespace ZoNTrellanUpdater;

namespace {

// What the callbacks were given last; a callback has no argument of its own.
struct Reported {
    int calls = 0;
    unsigned value = 0;
};
Reported phase, failure, progress;

template <Reported& place>
void note(unsigned value)
{
    ++place.calls;
    place.value = value;
}

void forgetReports()
{
    phase = failure = progress = Reported();
}

std::unique_ptr<ZoITrellanUpdater> create(const ZoTOptions& options)
{
    return std::unique_ptr<ZoITrellanUpdater>(ZoITrellanUpdater::createInstance(options));
}

ZoCTrellanUpdater& inside(ZoITrellanUpdater& updater)
{
    return dynamic_cast<ZoCTrellanUpdater&>(updater);
}

// The function in a slot (from 1) of the object's virtual table.
template <class Function>
Function* slot(ZoITrellanUpdater* object, unsigned number)
{
    void* const* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(object), sizeof table);
    return reinterpret_cast<Function*>(table[number - 1]);
}

}  // namespace

class Creation : public Updating {
protected:
    Creation() { forgetReports(); }
};

TEST_F(Creation, FreshUpdaterReportsToNobody)
{
    auto updater = create(optionsFor(TOOL_VERSION));
    testing::internal::CaptureStdout();
    inside(*updater).ReportPhase(1);
    inside(*updater).ReportFailure(2);
    inside(*updater).ReportProgress(3);
    inside(*updater).ReportMessage("text");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(phase.calls + failure.calls + progress.calls, 0);
}

TEST_F(Creation, FreshUpdaterPrintsToStandardOutput)
{
    auto updater = create(optionsFor(TOOL_VERSION));
    testing::internal::CaptureStdout();
    EXPECT_EQ(inside(*updater).print("%s-%d", "text", 7), 6);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "text-7");
}

TEST_F(Creation, EachReportReachesItsOwnCallback)
{
    auto updater = create(optionsFor(TOOL_VERSION));
    updater->setPhaseCallBack(note<phase>);
    updater->setFailureCallBack(note<failure>);
    updater->setProgressCallBack(note<progress>);
    inside(*updater).ReportPhase(0xFFFFFFFFu);
    inside(*updater).ReportFailure(4);
    inside(*updater).ReportProgress(100);
    EXPECT_EQ(phase.calls, 1);
    EXPECT_EQ(phase.value, 0xFFFFFFFFu);
    EXPECT_EQ(failure.calls, 1);
    EXPECT_EQ(failure.value, 4u);
    EXPECT_EQ(progress.calls, 1);
    EXPECT_EQ(progress.value, 100u);
}

TEST_F(Creation, NullSwitchesACallbackOffAgain)
{
    auto updater = create(optionsFor(TOOL_VERSION));
    updater->setPhaseCallBack(note<phase>);
    updater->setFailureCallBack(note<failure>);
    updater->setProgressCallBack(note<progress>);
    updater->setPhaseCallBack(nullptr);
    updater->setFailureCallBack(nullptr);
    updater->setProgressCallBack(nullptr);
    inside(*updater).ReportPhase(1);
    inside(*updater).ReportFailure(1);
    inside(*updater).ReportProgress(1);
    EXPECT_EQ(phase.calls + failure.calls + progress.calls, 0);
}

TEST_F(Creation, ReportedMessageReachesTheMessageCallbackOnly)
{
    auto updater = create(optionsFor(TOOL_VERSION));
    const MessageCapture capture(*updater);
    testing::internal::CaptureStdout();
    inside(*updater).ReportMessage("100% of %s");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(capture.fragments(), std::vector<std::string>{"100% of %s"});
}

TEST_F(Creation, CallbacksBelongToOneUpdater)
{
    auto first = create(optionsFor(TOOL_VERSION));
    auto second = create(optionsFor(TOOL_VERSION));
    first->setPhaseCallBack(note<phase>);
    inside(*second).ReportPhase(1);
    EXPECT_EQ(phase.calls, 0);
    inside(*first).ReportPhase(1);
    EXPECT_EQ(phase.calls, 1);
}

TEST_F(Creation, UpdaterKeepsItsOwnCopyOfTheOptions)
{
    ZoTOptions options = optionsFor(TOOL_VERSION);
    auto updater = create(options);
    options.command = ARCHIVE_VERSION;
    options.archivePath.clear();
    const MessageCapture capture(*updater);
    EXPECT_EQ(updater->apply(), 0u);
    EXPECT_EQ(updater->run(), 1);
    EXPECT_EQ(capture.text(), "1.0\n");
}

TEST_F(Creation, UnknownCommandIsAccepted)
{
    for (const unsigned command : {8u, 0xFFFFFFFFu}) {
        auto updater = create(optionsFor(command));
        const MessageCapture capture(*updater);
        EXPECT_EQ(updater->apply(), 0u);
        EXPECT_TRUE(afterBanner(capture).empty());
    }
}

TEST_F(Creation, ArchiveIdIsAlwaysZero)
{
    const TestArchive archive(description({firmwareEntry()}));
    auto updater = create(optionsFor(ARCHIVE_VERSION, archive.path()));
    EXPECT_EQ(updater->getArchiveId(), 0u);
    ASSERT_EQ(updater->apply(), 0u);
    EXPECT_EQ(updater->getArchiveId(), 0u);
}

TEST_F(Creation, IpAddressIsTheLocalHost)
{
    for (const unsigned command : {0u, 7u}) {
        auto updater = create(optionsFor(command));
        EXPECT_STREQ(inside(*updater).getIpAddress().c_str(), "127.0.0.1");
    }
}

TEST_F(Creation, ToolVersionIsOnePointZero)
{
    const ZoCVersion version = ZoCTrellanUpdater::getToolVersion();
    EXPECT_EQ(version.getAsULong64(), 0x0100000000000000ull);
    EXPECT_STREQ(version.getAsString().c_str(), "1.0");
}

TEST_F(Creation, StringsKeepTheirCharactersBothWays)
{
    EXPECT_STREQ(ZoCTrellanUpdater::tstring2ZoCString("caf\xC3\xA9 %s").c_str(), "caf\xC3\xA9 %s");
    EXPECT_TRUE(ZoCTrellanUpdater::tstring2ZoCString("").isEmpty());
    EXPECT_EQ(ZoCTrellanUpdater::ZoCString2tstring(ZoCString("caf\xC3\xA9 %s")), "caf\xC3\xA9 %s");
    EXPECT_EQ(ZoCTrellanUpdater::ZoCString2tstring(ZoCString()), "");
}

TEST_F(Creation, PlatformStringKeepsNuls)
{
    const ZoCString text = ZoCTrellanUpdater::tstring2ZoCString(std::string("ab\0cd", 5));
    EXPECT_EQ(std::string(text.c_str(), text.length()), std::string("ab\0cd", 5));
}

TEST_F(Creation, StandardStringEndsWhereThePlatformStringHasItsFirstNul)
{
    EXPECT_EQ(ZoCTrellanUpdater::ZoCString2tstring(ZoCString("ab\0cd", 5)), "ab");
}

TEST_F(Creation, OptionsStandInTheAgreedOrder)
{
    const std::size_t offsets[] = {offsetof(ZoTOptions, archivePath),
                                   offsetof(ZoTOptions, descriptionFileName),
                                   offsetof(ZoTOptions, option3),
                                   offsetof(ZoTOptions, boardTypes),
                                   offsetof(ZoTOptions, serialNumbers),
                                   offsetof(ZoTOptions, elementNames),
                                   offsetof(ZoTOptions, force),
                                   offsetof(ZoTOptions, noProgress),
                                   offsetof(ZoTOptions, verbose),
                                   offsetof(ZoTOptions, configuration),
                                   offsetof(ZoTOptions, disableCustomElements),
                                   offsetof(ZoTOptions, option12)};
    for (std::size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(offsets[i], i * sizeof(std::string)) << "string " << i;
    }
    for (std::size_t i = 6; i < 12; ++i) {
        EXPECT_EQ(offsets[i], 6 * sizeof(std::string) + (i - 6)) << "bool " << i;
    }
    EXPECT_EQ(offsetof(ZoTOptions, command), 6 * sizeof(std::string) + 8);
    EXPECT_EQ(sizeof(ZoTOptions::command), 4u);
}

TEST_F(Creation, CommandsHaveTheAgreedNumbers)
{
    EXPECT_EQ(unsigned(TOOL_VERSION), 0u);
    EXPECT_EQ(unsigned(ARCHIVE_VERSION), 1u);
    EXPECT_EQ(unsigned(PRINT_ARCHIVE), 2u);
    EXPECT_EQ(unsigned(OUTPUT_DESCRIPTION), 3u);
    EXPECT_EQ(unsigned(INSTALLED_VERSIONS), 4u);
    EXPECT_EQ(unsigned(READ_INVENTORY), 5u);
    EXPECT_EQ(unsigned(COMPARE_VERSIONS), 6u);
    EXPECT_EQ(unsigned(UPDATE), 7u);
}

TEST_F(Creation, UpdaterThatWasNeverUsedLeavesNothingBehind)
{
    create(optionsFor(UPDATE)).reset();
    EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
    EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, 0);
    EXPECT_EQ(TrellanSimulation::resources().locks, 0);
}

TEST(SlotOrder, MemberPointersEncodeTheAgreedSlots)
{
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::setPhaseCallBack), 3);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::setFailureCallBack), 4);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::setProgressCallBack), 5);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::setMessageCallBack), 6);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::apply), 7);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::run), 8);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::getArchiveInfo), 9);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::getArchiveId), 10);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::getUpdateElementList), 11);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::disableUpdateElement), 12);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::getUpdateFileList), 13);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::checkRebootSupport), 14);
    EXPECT_EQ(slotOf(&ZoITrellanUpdater::reboot), 15);
}

class SlotOrderOfAnInstance : public Creation {
protected:
    SimulatedTarget device{processorTarget()};
    TestArchive archive{description({firmwareEntry()})};

    // An updater that has read everything.
    std::unique_ptr<ZoITrellanUpdater> applied(unsigned command = COMPARE_VERSIONS)
    {
        auto updater = create(optionsFor(command, archive.path()));
        const MessageCapture quiet(*updater);
        EXPECT_EQ(updater->apply(), 0u);
        return updater;
    }
};

TEST_F(SlotOrderOfAnInstance, Slot1DestroysWithoutReleasingTheMemory)
{
    alignas(ZoCTrellanUpdater) unsigned char storage[sizeof(ZoCTrellanUpdater)];
    ZoITrellanUpdater* updater = new (storage) ZoCTrellanUpdater(optionsFor(READ_INVENTORY));
    {
        const MessageCapture quiet(*updater);
        ASSERT_EQ(updater->apply(), 0u);
    }
    ASSERT_EQ(TrellanSimulation::resources().errorLists, 2);
    slot<void(ZoITrellanUpdater*)>(updater, 1)(updater);
    EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
}

TEST_F(SlotOrderOfAnInstance, Slot2DestroysAndReleasesTheMemory)
{
    ZoITrellanUpdater* updater = applied().release();
    ASSERT_EQ(TrellanSimulation::resources().errorLists, 2);
    slot<void(ZoITrellanUpdater*)>(updater, 2)(updater);
    EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
}

TEST_F(SlotOrderOfAnInstance, Slots3To5SetThePhaseFailureAndProgressCallbacks)
{
    using Setter = void(ZoITrellanUpdater*, void (*)(unsigned));
    auto updater = create(optionsFor(TOOL_VERSION));
    slot<Setter>(updater.get(), 3)(updater.get(), note<phase>);
    slot<Setter>(updater.get(), 4)(updater.get(), note<failure>);
    slot<Setter>(updater.get(), 5)(updater.get(), note<progress>);
    inside(*updater).ReportPhase(3);
    inside(*updater).ReportFailure(4);
    inside(*updater).ReportProgress(5);
    EXPECT_EQ(phase.value, 3u);
    EXPECT_EQ(failure.value, 4u);
    EXPECT_EQ(progress.value, 5u);
}

TEST_F(SlotOrderOfAnInstance, Slot6SetsTheMessageCallback)
{
    static std::string taken;
    taken.clear();
    auto updater = create(optionsFor(TOOL_VERSION));
    void (*take)(const std::string&) = [](const std::string& text) { taken = text; };
    slot<void(ZoITrellanUpdater*, void (*)(const std::string&))>(updater.get(), 6)(updater.get(), take);
    inside(*updater).print("slot %d", 6);
    EXPECT_EQ(taken, "slot 6");
}

TEST_F(SlotOrderOfAnInstance, Slot7AppliesAndSlot8Runs)
{
    auto updater = create(optionsFor(ARCHIVE_VERSION, archive.path()));
    MessageCapture capture(*updater);
    EXPECT_EQ(slot<unsigned(ZoITrellanUpdater*)>(updater.get(), 7)(updater.get()), 0u);
    EXPECT_EQ(capture.text(), "");
    EXPECT_EQ(slot<int(ZoITrellanUpdater*)>(updater.get(), 8)(updater.get()), 1);
    EXPECT_EQ(capture.text(), "2.3.4\n");
}

TEST_F(SlotOrderOfAnInstance, Slot9GivesTheArchivesInformation)
{
    using Getter = void(ZoITrellanUpdater*, std::string&, std::string&, std::string&, std::string&, std::string&);
    auto updater = applied();
    std::string name, version, product, format, variant = "old";
    slot<Getter>(updater.get(), 9)(updater.get(), name, version, product, format, variant);
    EXPECT_EQ(name, "Test archive");
    EXPECT_EQ(version, "2.3.4");
    EXPECT_EQ(product, "Test product");
    EXPECT_EQ(format, "1.0");
    EXPECT_EQ(variant, "");
}

TEST_F(SlotOrderOfAnInstance, Slot10GivesTheArchiveId)
{
    auto updater = applied();
    EXPECT_EQ(slot<unsigned(ZoITrellanUpdater*)>(updater.get(), 10)(updater.get()), 0u);
}

TEST_F(SlotOrderOfAnInstance, Slots11And12ListAndDisableElements)
{
    auto updater = applied();
    slot<void(ZoITrellanUpdater*, unsigned)>(updater.get(), 12)(updater.get(), 0);
    ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    slot<void(ZoITrellanUpdater*, ZoTUpdateElement*&, unsigned&)>(updater.get(), 11)(updater.get(), list, count);
    const std::unique_ptr<ZoTUpdateElement[]> owner(list);
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(list[0].displayName, "Processor board, Firmware");
    EXPECT_TRUE(list[0].disabled);
}

TEST_F(SlotOrderOfAnInstance, Slot13ListsTheFiles)
{
    auto updater = applied();
    ZoTUpdateFile* list = nullptr;
    unsigned count = 0;
    slot<void(ZoITrellanUpdater*, ZoTUpdateFile*&, unsigned&)>(updater.get(), 13)(updater.get(), list, count);
    const std::unique_ptr<ZoTUpdateFile[]> owner(list);
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(list[0].name, "firmware.bin");
}

TEST_F(SlotOrderOfAnInstance, Slot14ChecksTheRebootSupportAndSlot15Refuses)
{
    auto updater = applied();
    const MessageCapture capture(*updater);
    unsigned state = 99;
    EXPECT_TRUE(slot<bool(ZoITrellanUpdater*, unsigned&)>(updater.get(), 14)(updater.get(), state));
    EXPECT_EQ(state, 0u);
    EXPECT_EQ(capture.text(), "");
    EXPECT_FALSE(slot<bool(ZoITrellanUpdater*)>(updater.get(), 15)(updater.get()));
    EXPECT_EQ(capture.fragments().size(), 1u);
}
