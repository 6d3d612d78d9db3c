// The lists for the host: archive information, elements, files, and leaving an element out.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Updating.h"
#include "inventory/ZoCUpdateInventory.h"
#include "support/OpenUpdater.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

namespace {

class HostLists : public Updating {
protected:
    HostLists() { archive.addFile("firmware.bin", "firmware"); }

    // An updater for `document` after apply().
    static std::unique_ptr<ZoITrellanUpdater> applied(const std::string& archivePath, unsigned command = UPDATE)
    {
        std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(optionsFor(command, archivePath)));
        const MessageCapture quiet(*updater);
        EXPECT_EQ(updater->apply(), 0u);
        return updater;
    }

    TestArchive archive{description({firmwareEntry()})};
};

// The unit's description for the given parameters of an enclosing I/O node.
std::string unitDescription(const ordered_json& unit)
{
    const SimulatedTarget device(target({board("ION", unit, {updateElement(1, {})})}));
    ZoCTrellanUpdater updater(optionsFor(INSTALLED_VERSIONS));
    const MessageCapture quiet(updater);
    EXPECT_EQ(updater.apply(), 0u);
    const auto elements = elementsOf(updater);
    EXPECT_EQ(elements.size(), 1u);
    return elements.empty() ? "no element" : elements[0].unitDescription;
}

}  // namespace

TEST_F(HostLists, AreEmptyBeforeApply)
{
    ZoCTrellanUpdater updater(optionsFor(UPDATE));
    ZoTUpdateElement element;
    ZoTUpdateElement* elements = &element;
    unsigned count = 99;
    updater.getUpdateElementList(elements, count);
    EXPECT_EQ(elements, nullptr);
    EXPECT_EQ(count, 0u);

    ZoTUpdateFile file;
    ZoTUpdateFile* files = &file;
    count = 99;
    updater.getUpdateFileList(files, count);
    EXPECT_EQ(files, nullptr);
    EXPECT_EQ(count, 0u);
}

TEST_F(HostLists, HoldWhatTheCommandHasRead)
{
    const SimulatedTarget device(processorTarget());
    auto updater = applied(archive.path(), PRINT_ARCHIVE);
    EXPECT_EQ(elementsOf(*updater).size(), 0u);
    EXPECT_EQ(filesOf(*updater).size(), 1u);
    updater = applied(archive.path(), INSTALLED_VERSIONS);
    EXPECT_EQ(elementsOf(*updater).size(), 1u);
    EXPECT_EQ(filesOf(*updater).size(), 0u);
    updater = applied(archive.path(), COMPARE_VERSIONS);
    EXPECT_EQ(elementsOf(*updater).size(), 1u);
    EXPECT_EQ(filesOf(*updater).size(), 1u);
}

TEST_F(HostLists, ShowAllOfAnElementAndItsFile)
{
    const ordered_json firmware = updateElement(3, {{"NAME", "UserFpga"},
                                                    {"VERSION", "1.2.3"},
                                                    {"CHECKSUM_CRC32", 7},
                                                    {"CUSTOM", 2},
                                                    {"VALID", 1},
                                                    {"ACTIVE", 0}});
    const SimulatedTarget device(target({board("ION",
                                               {{"PRODUCT/BOARD_TYPE", "IO7"},
                                                {"PRODUCT/NAME", "I/O board"},
                                                {"PRODUCT/SERIAL_NUMBER", 16777232},
                                                {"PRODUCT/SLOT_COUNT", 2},
                                                {"SLOT", 5},
                                                {"PRODUCT/UNITNAME", "Box"},
                                                {"UNITNAME", "left"},
                                                {"RACKNAME", "R1"}},
                                               {installedFirmware(1), firmware})}));
    const TestArchive ioArchive(description(
        {fileEntry("first.bin", {{"boardType", "XX"}}),
         fileEntry("fpga.bin", {{"boardType", "IO7"}, {"id", 3}, {"version", "1.2.4"}, {"checksumCrc32", 8}})}));
    const auto updater = applied(ioArchive.path());
    const auto elements = elementsOf(*updater);
    ASSERT_EQ(elements.size(), 2u);
    const ZoTUpdateElement& element = elements[1];
    EXPECT_EQ(element.index, 1u);
    EXPECT_EQ(element.boardType, "IO7");
    EXPECT_EQ(element.serialNumber, 16777232u);
    EXPECT_EQ(element.boardName, "I/O board");
    EXPECT_EQ(element.unitDescription, "Box: R1 / left");
    EXPECT_EQ(element.slot, 5u);
    EXPECT_EQ(element.slotCount, 2u);
    EXPECT_EQ(element.displayName, "I/O board, SN 16(1), FPGA");
    EXPECT_EQ(element.displayType, "FPGA");
    EXPECT_FALSE(element.isFileSystemElement);
    EXPECT_TRUE(element.valid);
    EXPECT_FALSE(element.active);
    EXPECT_EQ(element.installedVersion, "1.2.3");
    EXPECT_TRUE(element.custom);
    EXPECT_EQ(element.phase, 0u);
    EXPECT_TRUE(element.hasUpdateFile);
    EXPECT_EQ(element.updateFileIndex, 1);
    EXPECT_EQ(element.availableVersion, "1.2.4");
    EXPECT_TRUE(element.checksumDiffers);
    EXPECT_FALSE(element.disabled);
}

TEST_F(HostLists, ShowAnElementWithoutAFile)
{
    const SimulatedTarget device(target(
        {board("ION", {{"PRODUCT/BOARD_TYPE", "IO7"}}, {updateElement(1, {{"CHECKSUM_CRC32", 7}, {"VALID", 0}})})}));
    const auto elements = elementsOf(*applied(archive.path()));
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_FALSE(elements[0].hasUpdateFile);
    EXPECT_EQ(elements[0].updateFileIndex, -1);
    EXPECT_EQ(elements[0].availableVersion, "");
    EXPECT_FALSE(elements[0].checksumDiffers);
    EXPECT_EQ(elements[0].installedVersion, "");
    EXPECT_FALSE(elements[0].valid);
    EXPECT_TRUE(elements[0].active);
    EXPECT_FALSE(elements[0].custom);
    EXPECT_EQ(elements[0].unitDescription, "");
}

TEST_F(HostLists, ShowNoAvailableVersionForAFileWithoutOne)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive unversioned(description({firmwareEntry({{"version", nullptr}, {"checksumCrc32", 5}})}));
    const auto elements = elementsOf(*applied(unversioned.path()));
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_TRUE(elements[0].hasUpdateFile);
    EXPECT_EQ(elements[0].availableVersion, "");
    EXPECT_FALSE(elements[0].checksumDiffers);
}

TEST_F(HostLists, CompareChecksumsAlsoWhereTheTargetReportsNone)
{
    const SimulatedTarget device(target({processorBoard({updateElement(1, {{"NAME", "UserFirmware"}})})}));
    const auto elements = elementsOf(*applied(archive.path()));
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_TRUE(elements[0].checksumDiffers);

    const TestArchive zero(description({firmwareEntry({{"checksumCrc32", 0}})}));
    const auto equal = elementsOf(*applied(zero.path()));
    ASSERT_EQ(equal.size(), 1u);
    EXPECT_FALSE(equal[0].checksumDiffers);
}

TEST_F(HostLists, CompareAChecksumThatTheFileDoesNotGiveLikeAnyOther)
{
    TestArchive unknown(
        description({without(firmwareEntry(), "checksumCrc32"), without(firmwareEntry({{"id", 2}}), "checksumCrc32"),
                     without(firmwareEntry({{"id", 3}}), "checksumCrc32")}));
    unknown.addFile("firmware.bin", UpdateFiles::bitstreamFile(5, 91));  // its header is too short for the checksum
    const SimulatedTarget device(
        target({processorBoard({installedFirmware(1), updateElement(2, {{"NAME", "UserFpga"}}),
                                updateElement(3, {{"NAME", "UserCpld"}, {"CHECKSUM_CRC32", 4294967294u}})})}));
    const auto elements = elementsOf(*applied(unknown.path()));
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_TRUE(elements[0].checksumDiffers);
    EXPECT_TRUE(elements[1].checksumDiffers);
    EXPECT_FALSE(elements[2].checksumDiffers);
}

TEST_F(HostLists, ShowVersionsWhoseFirstNumberIsZero)
{
    const SimulatedTarget device(target({processorBoard({updateElement(1, {{"VERSION", "0.1"}})})}));
    const TestArchive early(description({firmwareEntry({{"version", "0.0.1"}})}));
    const auto elements = elementsOf(*applied(early.path()));
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0].installedVersion, "0.1");
    EXPECT_EQ(elements[0].availableVersion, "0.0.1");
}

TEST_F(HostLists, ShowCustomElementsOfEveryKind)
{
    const SimulatedTarget device(target({processorBoard(
        {updateElement(1, {{"CUSTOM", 0}}), updateElement(2, {{"CUSTOM", 1}}), updateElement(3, {{"CUSTOM", 2}})})}));
    const auto elements = elementsOf(*applied(archive.path(), INSTALLED_VERSIONS));
    ASSERT_EQ(elements.size(), 3u);
    EXPECT_FALSE(elements[0].custom);
    EXPECT_TRUE(elements[1].custom);
    EXPECT_TRUE(elements[2].custom);
}

TEST_F(HostLists, ShowThePhaseOfAnElement)
{
    const SimulatedTarget device(target({processorBoard({installedFirmware(1), installedFirmware(2)})}));
    const TestArchive phases(
        description({firmwareEntry({{"sequence", 9}}), firmwareEntry({{"id", 2}, {"sequence", 4}})}));
    const auto elements = elementsOf(*applied(phases.path()));
    ASSERT_EQ(elements.size(), 2u);
    EXPECT_EQ(elements[0].phase, 1u);
    EXPECT_EQ(elements[1].phase, 0u);
}

TEST_F(HostLists, IncludeFilesThatAreNotYetOnTheFlashDrive)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive files(description({firmwareEntry(), fileEntry("app.bin", {{"targetPath", "data/app.bin"}})}));
    const auto elements = elementsOf(*applied(files.path()));
    ASSERT_EQ(elements.size(), 2u);
    EXPECT_EQ(elements[1].index, 1u);
    EXPECT_TRUE(elements[1].isFileSystemElement);
    EXPECT_EQ(elements[1].displayName, "Processor board, Updatable file (app.bin)");
    EXPECT_EQ(elements[1].displayType, "Updatable file (app.bin)");
    EXPECT_EQ(elements[1].updateFileIndex, 1);
    EXPECT_EQ(elements[1].availableVersion, "2.3.4");
    EXPECT_EQ(elements[1].installedVersion, "");
}

TEST_F(HostLists, ShowUpdatesThatAreNotRequiredAsDisabled)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive same(description({firmwareEntry({{"version", "23.2"}, {"checksumCrc32", 5}})}));
    const auto elements = elementsOf(*applied(same.path()));
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_TRUE(elements[0].disabled);
    EXPECT_FALSE(elements[0].checksumDiffers);
}

TEST_F(HostLists, ShowForcedUpdatesThatAreNotRequiredAsEnabled)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive same(description({firmwareEntry({{"version", "23.2"}, {"checksumCrc32", 5}})}));
    ZoTOptions options = optionsFor(UPDATE, same.path());
    options.force = true;
    ZoCTrellanUpdater updater(options);
    const MessageCapture quiet(updater);
    ASSERT_EQ(updater.apply(), 0u);
    EXPECT_FALSE(elementsOf(updater).at(0).disabled);
}

TEST_F(HostLists, DescribeTheUnitByProductRackAndName)
{
    EXPECT_EQ(unitDescription({{"PRODUCT/UNITNAME", "Box"}, {"RACKNAME", "R1"}, {"UNITNAME", "left"}}),
              "Box: R1 / left");
    EXPECT_EQ(unitDescription({{"PRODUCT/UNITNAME", "Box"}, {"RACKNAME", "R1"}}), "Box: R1");
    EXPECT_EQ(unitDescription({{"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", "left"}}), "Box: left");
    EXPECT_EQ(unitDescription({{"PRODUCT/UNITNAME", "Box"}}), "Box");
    EXPECT_EQ(unitDescription({{"PRODUCT/PACKAGE_NAME", "Package"}, {"RACKNAME", "R1"}}), "Package: R1");
    EXPECT_EQ(unitDescription({{"PRODUCT/BOARD_TYPE", "IO7"}, {"RACKNAME", "R1"}, {"UNITNAME", "left"}}), "");
    EXPECT_EQ(unitDescription({{"PRODUCT/UNITNAME", ""}, {"RACKNAME", "R1"}}), ": R1");
}

TEST_F(HostLists, AreNewArraysEachTime)
{
    const SimulatedTarget device(processorTarget());
    const auto updater = applied(archive.path());
    ZoTUpdateElement* first = nullptr;
    ZoTUpdateElement* second = nullptr;
    unsigned count = 0;
    updater->getUpdateElementList(first, count);
    updater->getUpdateElementList(second, count);
    const std::unique_ptr<ZoTUpdateElement[]> firstOwner(first);
    const std::unique_ptr<ZoTUpdateElement[]> secondOwner(second);
    ASSERT_EQ(count, 1u);
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    EXPECT_NE(first, second);
    first[0].displayName = "changed by the host";
    EXPECT_EQ(second[0].displayName, "Processor board, Firmware");
    EXPECT_EQ(elementsOf(*updater)[0].displayName, "Processor board, Firmware");
}

TEST_F(HostLists, OutliveTheUpdater)
{
    const SimulatedTarget device(processorTarget());
    auto updater = applied(archive.path());
    ZoTUpdateFile* files = nullptr;
    unsigned count = 0;
    updater->getUpdateFileList(files, count);
    const std::unique_ptr<ZoTUpdateFile[]> owner(files);
    updater.reset();
    ASSERT_EQ(count, 1u);
    EXPECT_EQ(files[0].name, "firmware.bin");
}

TEST_F(HostLists, ListTheFilesInTheArchivesOrder)
{
    const TestArchive several(
        description({fileEntry("z.bin", {{"version", "23.2a12"}}), fileEntry("skipped.bin", {{"featureLevel", 3}}),
                     fileEntry("a.bin"), fileEntry("m.bin", {{"version", nullptr}})}));
    const auto files = filesOf(*applied(several.path(), PRINT_ARCHIVE));
    ASSERT_EQ(files.size(), 3u);
    EXPECT_EQ(files[0].name, "z.bin");
    EXPECT_EQ(files[0].version, "23.2a12");
    EXPECT_EQ(files[1].name, "a.bin");
    EXPECT_EQ(files[1].version, "2.3.4");
    EXPECT_EQ(files[2].name, "m.bin");
    EXPECT_EQ(files[2].version, "0.0");
}

TEST_F(HostLists, NewRecordsAreEmpty)
{
    const ZoTUpdateElement element;
    EXPECT_EQ(element.index + element.serialNumber + element.slot + element.slotCount + element.phase, 0u);
    EXPECT_EQ(element.boardType + element.boardName + element.unitDescription + element.displayName +
                  element.displayType + element.installedVersion + element.availableVersion,
              "");
    EXPECT_FALSE(element.isFileSystemElement || element.valid || element.active || element.custom ||
                 element.hasUpdateFile || element.checksumDiffers || element.disabled);
    const ZoTUpdateFile file;
    EXPECT_EQ(file.name + file.version, "");
}

TEST_F(HostLists, DisabledElementIsShownAndNotUpdated)
{
    const SimulatedTarget device(target({processorBoard({installedFirmware(1), installedFirmware(2)})}));
    TestArchive two(description({firmwareEntry(), firmwareEntry({{"id", 2}})}));
    two.addFile("firmware.bin", "firmware");
    const auto updater = applied(two.path());
    updater->disableUpdateElement(0);
    const auto elements = elementsOf(*updater);
    ASSERT_EQ(elements.size(), 2u);
    EXPECT_TRUE(elements[0].disabled);
    EXPECT_FALSE(elements[1].disabled);

    const MessageCapture quiet(*updater);
    EXPECT_EQ(updater->run(), 1);
    const auto started = callsOf("update2", device.trace());
    ASSERT_EQ(started.size(), 1u);
    EXPECT_EQ(started[0].at("id"), 2);
}

TEST_F(HostLists, ElementThatIsDisabledTwiceStaysDisabled)
{
    const SimulatedTarget device(processorTarget());
    const auto updater = applied(archive.path());
    updater->disableUpdateElement(0);
    updater->disableUpdateElement(0);
    EXPECT_TRUE(elementsOf(*updater).at(0).disabled);
}

TEST_F(HostLists, DisablingAnUpdateThatIsNotRequiredKeepsItDisabled)
{
    const SimulatedTarget device(processorTarget());
    const TestArchive same(description({firmwareEntry({{"version", "23.2"}, {"checksumCrc32", 5}})}));
    const auto updater = applied(same.path());
    updater->disableUpdateElement(0);
    EXPECT_TRUE(elementsOf(*updater).at(0).disabled);
}

// A host may disable each of a great many elements. With the records taken out of the list, a walk finds none of them.
TEST_F(HostLists, AnElementIsDisabledWithoutAWalkThroughTheList)
{
    OpenUpdater updater(optionsFor(UPDATE));
    ZoCUpdateInventory& inventory = updater.getInventory();
    inventory.appendElement();
    inventory.appendElement();
    ZoCUpdateInventory::ElementList records;
    records.swap(inventory.getUpdateElementList());

    updater.disableUpdateElement(1);

    EXPECT_FALSE(records.front().disabled);
    EXPECT_TRUE(records.back().disabled);
    EXPECT_TRUE(records.back().isExcluded);
    records.swap(inventory.getUpdateElementList());
}

TEST_F(HostLists, IndexBeyondTheEndDisablesNothing)
{
    const SimulatedTarget device(target({processorBoard({installedFirmware(1), installedFirmware(2)})}));
    const TestArchive two(description({firmwareEntry(), firmwareEntry({{"id", 2}})}));
    const auto updater = applied(two.path());
    const MessageCapture capture(*updater);
    for (const unsigned index : {2u, 3u, 0xFFFFFFFFu}) {
        updater->disableUpdateElement(index);
    }
    for (const ZoTUpdateElement& element : elementsOf(*updater)) {
        EXPECT_FALSE(element.disabled) << element.index;
    }
    EXPECT_EQ(capture.text(), "");
}

TEST_F(HostLists, DisablingBeforeApplyDoesNothing)
{
    const SimulatedTarget device(processorTarget());
    ZoCTrellanUpdater updater(optionsFor(UPDATE, archive.path()));
    const MessageCapture quiet(updater);
    updater.disableUpdateElement(0);
    ASSERT_EQ(updater.apply(), 0u);
    EXPECT_FALSE(elementsOf(updater).at(0).disabled);
}

TEST_F(HostLists, TellWhatTheArchiveSaysOfItself)
{
    ordered_json full = description({});
    full["info"]["formatVersion"] = "1.4";
    full["info"]["archiveVariant"] = "blue";
    const TestArchive variant(full);
    std::string name = "a", version = "b", product = "c", format = "d", variantName = "e";
    applied(variant.path(), ARCHIVE_VERSION)->getArchiveInfo(name, version, product, format, variantName);
    EXPECT_EQ(name, "Test archive");
    EXPECT_EQ(version, "2.3.4");
    EXPECT_EQ(product, "Test product");
    EXPECT_EQ(format, "1.4");
    EXPECT_EQ(variantName, "blue");
}

TEST_F(HostLists, TellOfNoArchiveBeforeOneWasReadAndPrintNothing)
{
    ZoCTrellanUpdater updater(optionsFor(UPDATE));
    const MessageCapture capture(updater);
    std::string name = "a", version = "b", product = "c", format = "d", variantName = "e";
    updater.getArchiveInfo(name, version, product, format, variantName);
    EXPECT_EQ(name, "");
    EXPECT_EQ(version, "0.0");
    EXPECT_EQ(product, "");
    EXPECT_EQ(format, "0.0");
    EXPECT_EQ(variantName, "");
    EXPECT_EQ(capture.text(), "");
}
