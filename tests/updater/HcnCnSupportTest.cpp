// The check before an update that the archive knows all of the host communication node and the compute node.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Updating.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

ordered_json computeNode(std::vector<ordered_json> elements)
{
    return board("CN", {{"PRODUCT/BOARD_TYPE", "CB100"}, {"PRODUCT/NAME", "Compute board"}}, elements);
}

ordered_json ioNode(std::vector<ordered_json> elements)
{
    return item("NETWORK", {}, {board("ION", {{"PRODUCT/BOARD_TYPE", "IO7"}, {"PRODUCT/NAME", "I/O node"}}, elements)});
}

ordered_json computeFirmware(unsigned id)
{
    return updateElement(id, {{"NAME", "CnFirmware"}, {"VERSION", "1.0"}});
}

// The archive has files for the id 1 of the processor board and of the compute board, and for no other element.
class HcnCnSupport : public Updating {
protected:
    // Applies an update to `document`, which is refused with one message or succeeds without; `elements` is then what
    // the updater lists.
    unsigned applyUpdate(const ordered_json& document, ZoTOptions options)
    {
        const SimulatedTarget device(document);
        const TestArchive archive(
            description({firmwareEntry(), fileEntry("cn.bin", {{"boardType", "CB100"}, {"version", "2.0"}})}));
        options.archivePath = archive.path();
        ZoCTrellanUpdater updater(options);
        const MessageCapture capture(updater);
        const unsigned result = updater.apply();
        messages = afterBanner(capture);
        EXPECT_EQ(messages.size(), result == 0 ? 0u : 1u);
        elements = elementsOf(updater);
        return result;
    }

    unsigned applyUpdate(const ordered_json& document) { return applyUpdate(document, optionsFor(UPDATE)); }

    // For each element in list order 'D' when it is disabled and '-' when not.
    std::string disabled() const
    {
        std::string marks;
        for (const ZoTUpdateElement& element : elements) {
            marks += element.disabled ? 'D' : '-';
        }
        return marks;
    }

    std::vector<std::string> messages;
    std::vector<ZoTUpdateElement> elements;
};

}  // namespace

TEST_F(HcnCnSupport, HoldsWhenEveryElementOfBothNodesHasAFile)
{
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware()}, {computeNode({computeFirmware(1)})})})), 0u);
    EXPECT_EQ(disabled(), "--");
}

TEST_F(HcnCnSupport, FailsWhenAnElementOfTheHcnHasNoFile)
{
    EXPECT_EQ(
        applyUpdate(target({processorBoard({installedFirmware(1), installedFirmware(9)},
                                           {computeNode({computeFirmware(1)}), ioNode({updateElement(4, {})})})})),
        2u);
    EXPECT_EQ(messages,
              std::vector<std::string>{"ERROR: The target system is not supported by this firmware archive.\n"});
    EXPECT_EQ(disabled(), "DDDD");
}

TEST_F(HcnCnSupport, FailsWhenAnElementOfTheCnHasNoFile)
{
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware()}, {computeNode({computeFirmware(9)})})})), 2u);
    EXPECT_EQ(disabled(), "DD");
}

TEST_F(HcnCnSupport, FailsOnACnWithoutAnHcn)
{
    EXPECT_EQ(applyUpdate(target({computeNode({computeFirmware(9)})})), 2u);
    EXPECT_EQ(disabled(), "D");
}

TEST_F(HcnCnSupport, HoldsWhenNeitherNodeWasFound)
{
    EXPECT_EQ(applyUpdate(target({ioNode({updateElement(4, {}), updateElement(5, {})})})), 0u);
    EXPECT_EQ(disabled(), "--");
}

TEST_F(HcnCnSupport, DoesNotLookAtOtherBoards)
{
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware()}, {ioNode({updateElement(4, {})})})})), 0u);
    EXPECT_EQ(disabled(), "--");
}

TEST_F(HcnCnSupport, DoesNotLookAtASecondHcn)
{
    ordered_json second = processorBoard({installedFirmware(9)});
    second["id"] = "HCN[2]";
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware()}), second})), 0u);
    EXPECT_EQ(disabled(), "--");
}

TEST_F(HcnCnSupport, DoesNotLookAtFilesOnTheFlashDrive)
{
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware(), fileElement(1, {{"LOCATION", "app.bin"}})})})),
              0u);
    EXPECT_EQ(disabled(), "--");
}

TEST_F(HcnCnSupport, HoldsForAnEmptyListOfElements)
{
    ZoTOptions options = optionsFor(UPDATE);
    options.elementNames = "NoSuchElement";
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware(9)})}), options), 0u);
    EXPECT_TRUE(elements.empty());
}

TEST_F(HcnCnSupport, CountsDisabledElementsToo)
{
    ZoTOptions options = optionsFor(UPDATE);
    options.disableCustomElements = true;
    const ordered_json custom = updateElement(9, {{"NAME", "Custom"}, {"CUSTOM", 1}});
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware(), custom})}), options), 2u);
    EXPECT_EQ(disabled(), "DD");
}

TEST_F(HcnCnSupport, DisablesFilesOnTheFlashDriveToo)
{
    EXPECT_EQ(applyUpdate(target({processorBoard({installedFirmware(9), fileElement(1, {{"LOCATION", "app.bin"}})})})),
              2u);
    EXPECT_EQ(disabled(), "DD");
}

TEST_F(HcnCnSupport, HoldsBeforeTheInventoryWasRead)
{
    ZoCTrellanUpdater updater(optionsFor(UPDATE));
    EXPECT_TRUE(updater.checkHcnCnSupport());
}
