// Updates that are not required, and the notices about elements that will not be updated.
#include "assignment/ZoCUpdateAssignment.h"
#include "base/Pointers.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNUpdateArchive::UpdateMode;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::UpdateNeed;
using ZoNUpdateInventory::ZoSUpdateElement;

bool ZoCUpdateAssignment::isInUse(const ZoSUpdateElement& element) const
{
    return element.isFileSystemElement || options.configuration || element.active;
}

UpdateNeed ZoCUpdateAssignment::needOf(const ZoSUpdateElement& element) const
{
    const ZoSUpdateFile& file = *fileOf(element);
    if (!element.valid) {
        return UpdateNeed::notValid;
    }
    if (!isInUse(element)) {
        return UpdateNeed::notInUse;
    }
    if (file.mode == UpdateMode::upgrade) {
        return file.version > element.version ? UpdateNeed::newerVersion : UpdateNeed::none;
    }
    if (file.version.getAsULong64() != 0 && file.version != element.version) {
        return UpdateNeed::otherVersion;
    }
    const bool differs = element.isChecksumKnown() && file.checksumCrc32 != element.checksumCrc32;
    return differs ? UpdateNeed::otherChecksum : UpdateNeed::none;
}

void ZoCUpdateAssignment::computeRedundantUpdates()
{
    computeRedundantUpdatesOf(ZoNUpdateBase::pointersTo(updateElements));
}

void ZoCUpdateAssignment::computeRedundantUpdatesOf(const ElementPointers& elements)
{
    for (ZoSUpdateElement* const element : elements) {
        const ZoSUpdateFile* const file = fileOf(*element);
        if (file == nullptr || needOf(*element) != UpdateNeed::none) {
            continue;
        }
        element->notRequired = true;
        // Force repeats standard updates; an upgrade never goes back to an older or equal version.
        if (!options.force || file->mode != UpdateMode::standard) {
            element->isUpToDate = true;
            element->disabled = true;
        }
    }
}

void ZoCUpdateAssignment::printNotRequiredUpdates() const
{
    if (options.force) {
        return;
    }
    bool isFirst = true;
    for (const ZoSUpdateElement& element : updateElements) {
        if (fileOf(element) == nullptr || !element.notRequired) {
            continue;
        }
        if (isFirst) {
            updater.print("\nNo update is required for these elements:\n");
            isFirst = false;
        }
        updater.print("%*s%s\n", 8, "", element.displayName.c_str());
    }
}

void ZoCUpdateAssignment::printUnsupportedUpdateElements() const
{
    bool isFirst = true;
    for (const ZoSUpdateElement& element : updateElements) {
        if (element.disabled || fileOf(element) != nullptr) {
            continue;
        }
        if (isFirst) {
            updater.print("\nUnsupported update elements (will be ignored):\n");
            isFirst = false;
        }
        updater.print("%*s%s\n", 8, "", element.displayName.c_str());
    }
    if (!isFirst) {
        updater.print("\n");
    }
}
