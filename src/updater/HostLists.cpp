// The lists that a host shows to its user, and its choice among the elements.
#include "assignment/ZoCUpdateAssignment.h"
#include "base/CellText.h"
#include "base/PlatformText.h"
#include "inventory/UnitTitle.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNTrellanUpdater;

namespace {

void describeUpdateFile(ZoTUpdateElement& record, const ZoNUpdateInventory::ZoSUpdateElement& element,
                        const ZoNUpdateArchive::ZoSUpdateFile* file)
{
    record.updateFileIndex = element.updateFileIndex;
    record.hasUpdateFile = file != nullptr;
    if (file != nullptr) {
        record.availableVersion = versionText(file->version);
        record.checksumDiffers = file->checksumCrc32 != element.checksumCrc32;
    }
}

void describeElement(ZoTUpdateElement& record, const ZoNUpdateInventory::ZoSUpdateElement& element)
{
    record.boardType = textBeforeNul(element.boardType);
    record.serialNumber = element.serialNumber;
    record.boardName = textBeforeNul(element.boardName);
    record.unitDescription = ZoNUpdateInventory::unitTitle(element);
    record.slot = element.slot;
    record.slotCount = element.slotCount;
    record.displayName = textBeforeNul(element.displayName);
    record.displayType = textBeforeNul(element.displayType);
    record.isFileSystemElement = element.isFileSystemElement;
    record.valid = element.valid;
    record.active = element.active;
    record.installedVersion = versionText(element.version);
    record.custom = element.custom != 0;
    record.phase = element.phase;
    record.disabled = element.disabled;
}

}  // namespace

void ZoCTrellanUpdater::getArchiveInfo(std::string& archiveName, std::string& archiveVersion, std::string& productName,
                                       std::string& formatVersion, std::string& archiveVariant)
{
    archive->getInfo(archiveName, archiveVersion, productName, formatVersion, archiveVariant);
}

void ZoCTrellanUpdater::getUpdateElementList(ZoTUpdateElement*& list, unsigned& count)
{
    const auto& elements = inventory->getUpdateElementList();
    count = static_cast<unsigned>(elements.size());
    auto records = count == 0 ? nullptr : std::make_unique<ZoTUpdateElement[]>(count);
    unsigned position = 0;
    for (const auto& element : elements) {
        ZoTUpdateElement& record = records[position];
        record.index = position++;
        describeElement(record, element);
        describeUpdateFile(record, element, assignment->fileOf(element));
    }
    list = records.release();
}

void ZoCTrellanUpdater::disableUpdateElement(unsigned index)
{
    if (auto* const element = inventory->findElement(index); element != nullptr) {
        element->isExcluded = true;
        element->disabled = true;
    }
}

void ZoCTrellanUpdater::getUpdateFileList(ZoTUpdateFile*& list, unsigned& count)
{
    const auto& files = archive->getUpdateFileList();
    count = static_cast<unsigned>(files.size());
    auto records = count == 0 ? nullptr : std::make_unique<ZoTUpdateFile[]>(count);
    for (unsigned i = 0; i < count; ++i) {
        records[i].name = textBeforeNul(files[i].name);
        records[i].version = textBeforeNul(files[i].version.getAsString());
    }
    list = records.release();
}
