// Targets in which each member in turn is missing or of another type: an update of any of them ends in order.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "Updating.h"
#include "simulation/base/Resources.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

using Pointer = ordered_json::json_pointer;

// A target with every parameter that the library reads: on its board, its unit, an element and a file.
ordered_json fullTarget()
{
    const ordered_json unit = {{"PRODUCT/UNITNAME", "Box"},
                               {"PRODUCT/PACKAGE_NAME", "Package"},
                               {"PRODUCT/SERIAL_NUMBER", 1},
                               {"UNITNAME", "left"},
                               {"RACKNAME", "R1"}};
    const ordered_json hcn = {{"PRODUCT/BOARD_TYPE", "KR5120"},    {"PRODUCT/VARIANT", "V"},  {"PRODUCT/ID", 3},
                              {"PRODUCT/SERIAL_NUMBER", 16777232}, {"PRODUCT/SLOT_COUNT", 1}, {"SLOT", 2},
                              {"PRODUCT/NAME", "Processor board"}};
    const ordered_json firmware = {{"LOCATION", "flash"},
                                   {"HW_COMPATIBILITY_ID", 4},
                                   {"SW_COMPATIBILITY_ID", 5},
                                   {"TYPE_ID", 6},
                                   {"CUSTOM", 1},
                                   {"CHECKSUM_CRC32", 7},
                                   {"VERSION", "23.2"},
                                   {"NAME", "UserFirmware"},
                                   {"VERSION_HISTORY", "23.1"}};
    return target({board("HCN", hcn, {updateElement(1, firmware), fileElement(2, {{"LOCATION", "/nosuch/app.bin"}})},
                         {item("BACKPLANE", unit)}),
                   item("IOROUTER", unit, {item("NETWORK", {}, {item("ION[1]", {{"UNITNAME", "node"}})})})});
}

ordered_json archiveOfFullTarget()
{
    const ordered_json board = {
        {"boardVariant", "V"}, {"boardId", 3}, {"hwCompatibilityId", 4}, {"swCompatibilityId", 5}};
    return description({firmwareEntry(board)});
}

void collectPointers(const ordered_json& value, const Pointer& at, std::vector<Pointer>& pointers)
{
    if (!value.is_structured()) {
        return;
    }
    for (const auto& [name, member] : value.items()) {
        const Pointer pointer = value.is_array() ? at / static_cast<std::size_t>(std::stoul(name)) : at / name;
        pointers.push_back(pointer);
        collectPointers(member, pointer, pointers);
    }
}

std::vector<Pointer> everyMember()
{
    std::vector<Pointer> pointers;
    collectPointers(fullTarget(), Pointer(), pointers);
    return pointers;
}

void remove(ordered_json& document, const Pointer& pointer)
{
    ordered_json& parent = document[pointer.parent_pointer()];
    if (parent.is_array()) {
        parent.erase(static_cast<std::size_t>(std::stoul(pointer.back())));
    } else {
        parent.erase(pointer.back());
    }
}

class HostileTarget : public Updating {
protected:
    HostileTarget() { archive.addFile("firmware.bin", "firmware"); }

    // Applies and, where that succeeds, runs an update and a comparison of `document`; returns what the update's
    // apply() gave. Nothing may be left over.
    unsigned updateOf(const ordered_json& document)
    {
        unsigned applied = 99;
        for (const unsigned command : {COMPARE_VERSIONS, UPDATE}) {
            masterErrors().clear();
            const SimulatedTarget device(document);
            testing::internal::CaptureStderr();
            {
                ZoCTrellanUpdater updater(optionsFor(command, archive.path()));
                const MessageCapture capture(updater);
                applied = updater.apply();
                messages = afterBanner(capture).size();
                if (applied == 0) {
                    updater.run();
                }
            }
            testing::internal::GetCapturedStderr();
            EXPECT_EQ(TrellanSimulation::resources().errorLists, 0);
            EXPECT_EQ(TrellanSimulation::resources().inventoryTrees, 0);
            EXPECT_EQ(TrellanSimulation::resources().locks, 0);
        }
        return applied;
    }

    TestArchive archive{archiveOfFullTarget()};
    std::size_t messages = 0;  // of the update's apply() behind its banner
};

}  // namespace

TEST_F(HostileTarget, IsUpdatedWhenNothingIsMissing)
{
    EXPECT_EQ(updateOf(fullTarget()), 0u);
    EXPECT_EQ(masterErrors().getErrorCount(), 0u);
    EXPECT_EQ(messages, 0u);
}

TEST_F(HostileTarget, LackingAnyMemberIsReadOrRefusedInOrder)
{
    ASSERT_GT(everyMember().size(), 50u);
    for (const Pointer& pointer : everyMember()) {
        SCOPED_TRACE(pointer.to_string());
        ordered_json document = fullTarget();
        remove(document, pointer);
        const unsigned applied = updateOf(document);
        const bool needed = pointer.back() == "tree" || pointer.back() == "id";
        EXPECT_EQ(applied == 1, needed);
        if (applied == 1) {
            EXPECT_EQ(messages, 1u);
        }
    }
}

TEST_F(HostileTarget, WithAMemberOfNoTypeThatItMayHaveIsRefused)
{
    for (const Pointer& pointer : everyMember()) {
        SCOPED_TRACE(pointer.to_string());
        ordered_json document = fullTarget();
        document[pointer] = true;
        EXPECT_EQ(updateOf(document), 1u);
        EXPECT_EQ(messages, 1u);
    }
}

TEST_F(HostileTarget, WithTextForANumberOrANumberForTextIsReadWithErrors)
{
    unsigned swapped = 0;
    for (const Pointer& pointer : everyMember()) {
        if (pointer.to_string().find("/parameters/") == std::string::npos) {
            continue;
        }
        SCOPED_TRACE(pointer.to_string());
        ordered_json document = fullTarget();
        document[pointer] = document[pointer].is_string() ? ordered_json(-1) : ordered_json("text");
        EXPECT_NE(updateOf(document), 1u);
        ++swapped;
    }
    EXPECT_GT(swapped, 30u);
}
