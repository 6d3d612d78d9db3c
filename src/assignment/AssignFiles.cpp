// Which file each element gets, and the elements for flash-drive files that are not on the target yet.
#include "assignment/FirstFits.h"
#include "assignment/MatchCriteria.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "base/PlatformText.h"
#include "base/Pointers.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;
using ZoNUpdateInventory::ZoSUpdateElementValues;

namespace {

void giveFile(ZoSUpdateElement& element, std::vector<ZoSUpdateFile>& files, std::uint32_t index)
{
    element.updateFileIndex = static_cast<std::int32_t>(index);
    ++files[index].assignedElementCount;
}

// A record like `model`, for the file at `targetPath`.
void makeFileSystemElement(ZoSUpdateElement& element, const ZoSUpdateElement& model, const std::string& targetPath)
{
    const std::uint32_t index = element.index;
    static_cast<ZoSUpdateElementValues&>(element) = model;
    element.index = index;
    element.isListed = false;
    element.location = platformText(targetPath);
    if (const std::size_t separator = targetPath.find_last_of("/\\"); separator != std::string::npos) {
        element.name += " (";
        element.name += platformText(targetPath.substr(separator + 1));
        element.name += ")";
    }
    ZoCUpdateInventory::generateDisplayString(element.boardName, element.boardType, element.serialNumber, element.name,
                                              element.displayType, element.displayName);
    element.createErrorLists();
}

}  // namespace

ZoCUpdateAssignment::ZoCUpdateAssignment(const ZoCTrellanUpdater& updater, const ZoNTrellanUpdater::ZoTOptions& options,
                                         ZoCUpdateArchive& archive, ZoCUpdateInventory& inventory)
    : updater(updater),
      options(options),
      archive(archive),
      inventory(inventory),
      updateFiles(archive.getUpdateFileList()),
      updateElements(inventory.getUpdateElementList())
{
}

void ZoCUpdateAssignment::makeAssignment()
{
    ElementPointers elements = pointersTo(updateElements);
    assignFilesTo(elements);
    addFileSystemElements(elements);
    computeRedundantUpdatesOf(elements);
    computePhasesOf(elements);
    computeSupportOf(elements);
}

void ZoCUpdateAssignment::forgetAssignment()
{
    for (ZoSUpdateElement& element : updateElements) {
        element.updateFileIndex = -1;
        element.notRequired = false;
        element.isUpToDate = false;
        element.blocksUpdate = false;
    }
    for (ZoSUpdateFile& file : updateFiles) {
        file.assignedElementCount = 0;
    }
    numberOfUpdatePhases = 0;
    targetSupported = false;
}

ZoSUpdateFile* ZoCUpdateAssignment::fileOf(const ZoSUpdateElement& element) const
{
    return element.updateFileIndex != -1 ? &updateFiles[static_cast<std::size_t>(element.updateFileIndex)] : nullptr;
}

void ZoCUpdateAssignment::assignUpdateFiles()
{
    ElementPointers elements = pointersTo(updateElements);
    assignFilesTo(elements);
    addFileSystemElements(elements);
}

void ZoCUpdateAssignment::assignFilesTo(const ElementPointers& elements)
{
    const auto files = ZoNUpdateAssignment::firstFits(elements, updateFiles);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (files[i]) {
            giveFile(*elements[i], updateFiles, *files[i]);
        }
    }
}

void ZoCUpdateAssignment::addFileSystemElements(ElementPointers& elements)
{
    const ZoSUpdateElement* const model = inventory.getFileSystemElementTemplate();
    if (model == nullptr) {
        return;
    }
    for (std::uint32_t index = 0; index < updateFiles.size(); ++index) {
        const ZoSUpdateFile& file = updateFiles[index];
        std::string targetPath = ZoNUpdateAssignment::targetPathOtherwise;
        if (!file.hasTargetPath || file.assignedElementCount != 0 || !matches(*model, file, targetPath)) {
            continue;
        }
        ZoSUpdateElement& element = inventory.appendElement();
        makeFileSystemElement(element, *model, targetPath);
        giveFile(element, updateFiles, index);
        elements.push_back(&element);
    }
}
