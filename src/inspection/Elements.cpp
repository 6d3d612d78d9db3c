// What the inspector tells of the target's elements.
#include <stdexcept>

#include "base/PlatformText.h"
#include "inspection/ElementState.h"
#include "inspection/ErrorRecord.h"
#include "inspection/ZoCTrellanInspector.h"
#include "operation/ZoCUpdateOperation.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateBase;
using namespace ZoNUpdateInspection;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::UpdateNeed;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

bool isDowngrade(const ZoSUpdateElement& element, const ZoSUpdateFile& file)
{
    return file.version.getAsULong64() != 0 && element.version.getAsULong64() != 0 && file.version < element.version;
}

ZoTNeed needOf(UpdateNeed need)
{
    switch (need) {
        case UpdateNeed::notValid:
            return ZoTNeed::NOT_VALID;
        case UpdateNeed::notInUse:
            return ZoTNeed::NOT_IN_USE;
        case UpdateNeed::newerVersion:
            return ZoTNeed::NEWER_VERSION;
        case UpdateNeed::otherVersion:
            return ZoTNeed::OTHER_VERSION;
        case UpdateNeed::otherChecksum:
            return ZoTNeed::OTHER_CHECKSUM;
        default:
            return ZoTNeed::NONE;
    }
}

ZoTError errorOf(const std::string& message)
{
    ZoTError error{};
    error.text = message.substr(0, message.find_last_not_of('\n') + 1);
    return error;
}

}  // namespace

const ZoSUpdateElement& ZoCTrellanInspector::elementAt(unsigned index) const
{
    const ZoSUpdateElement* const found = updater.getInventory().findElement(index);
    if (found == nullptr) {
        throw std::out_of_range("ZoITrellanInspector: there is no such element");
    }
    return *found;
}

unsigned ZoCTrellanInspector::getElementCount()
{
    return static_cast<unsigned>(updater.getInventory().getUpdateElementList().size());
}

const ZoTElement& ZoCTrellanInspector::getElement(unsigned index)
{
    const ZoSUpdateElement& source = elementAt(index);
    element.index = index;
    element.name = textBeforeNul(source.name);
    element.displayedSerialNumber = allText(ZoCUpdateInventory::displayedSerialNumber(source.serialNumber));
    element.boardAddress = allText(source.boardAddress.toString());
    element.isListed = source.isListed;
    element.hasInstalledChecksum = source.hasChecksum;
    element.installedChecksum = source.hasChecksum ? source.checksumCrc32 : 0;
    element.filePosition = source.updateFileIndex;
    const ZoSUpdateFile* const itsFile = updater.getAssignment().fileOf(source);
    element.isDowngrade = itsFile != nullptr && isDowngrade(source, *itsFile);
    element.state = stateOf(source, updater);
    element.blocksUpdate = source.blocksUpdate;
    element.need = itsFile != nullptr ? needOf(updater.getAssignment().needOf(source)) : ZoTNeed::NONE;
    return element;
}

const ZoTKeys& ZoCTrellanInspector::getElementKeys(unsigned index)
{
    const ZoSUpdateElement& source = elementAt(index);
    keys.boardType = allText(source.boardType);
    keys.hasBoardVariant = !source.variant.isEmpty();
    keys.boardVariant = allText(source.variant);
    keys.boardId = source.productId;
    keys.hwCompatibilityId = source.hwCompatibilityId;
    keys.swCompatibilityId = source.swCompatibilityId;
    keys.isFile = source.isFileSystemElement;
    keys.id = source.isFileSystemElement ? 0 : source.id;
    keys.targetPath = source.isFileSystemElement ? allText(source.location) : std::string();
    return keys;
}

unsigned ZoCTrellanInspector::getElementErrorCount(unsigned index)
{
    const ZoSUpdateElement& source = elementAt(index);
    return source.statusErrorList->getErrorCount() + source.resultErrorList->getErrorCount() +
           (source.writeError.empty() ? 0 : 1);
}

const ZoTError& ZoCTrellanInspector::getElementError(unsigned index, unsigned position)
{
    if (position >= getElementErrorCount(index)) {
        throw std::out_of_range("ZoITrellanInspector: there is no such error");
    }
    const ZoSUpdateElement& source = elementAt(index);
    const unsigned statusErrors = source.statusErrorList->getErrorCount();
    const unsigned reportedErrors = statusErrors + source.resultErrorList->getErrorCount();
    if (position < statusErrors) {
        error = errorOf(*source.statusErrorList, position);
    } else if (position < reportedErrors) {
        error = errorOf(*source.resultErrorList, position - statusErrors);
    } else {
        error = errorOf(source.writeError);
    }
    return error;
}
