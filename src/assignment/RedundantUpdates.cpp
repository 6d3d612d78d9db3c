// Updates that are not required, and the notices about elements that will not be updated.
#include "assignment/ZoCUpdateAssignment.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNUpdateArchive::UpdateMode;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

bool isNeeded(const ZoSUpdateElement& element, const ZoSUpdateFile& file)
{
    if (file.mode == UpdateMode::upgrade) {
        return file.version > element.version;
    }
    if (file.version.getAsULong64() != 0 && file.version != element.version) {
        return true;
    }
    return element.isChecksumKnown() && file.checksumCrc32 != element.checksumCrc32;
}

}  // namespace

bool ZoCUpdateAssignment::isInUse(const ZoSUpdateElement& element) const
{
    return element.isFileSystemElement || options.configuration || element.active;
}

void ZoCUpdateAssignment::computeRedundantUpdates()
{
    for (ZoSUpdateElement& element : updateElements) {
        const ZoSUpdateFile* const file = fileOf(element);
        if (file == nullptr || !element.valid || !isInUse(element) || isNeeded(element, *file)) {
            continue;
        }
        element.notRequired = true;
        // Force repeats standard updates; an upgrade never goes back to an older or equal version.
        if (!options.force || file->mode != UpdateMode::standard) {
            element.isUpToDate = true;
            element.disabled = true;
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
