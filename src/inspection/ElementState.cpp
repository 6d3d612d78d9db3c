#include "inspection/ElementState.h"

#include "assignment/ZoCUpdateAssignment.h"

using ZoNTrellanInspector::ZoTState;
using namespace ZoNUpdateInventory;

namespace ZoNUpdateInspection {
namespace {

// Of an element that has had no part in an update.
ZoTState stateBeforeUpdate(const ZoSUpdateElement& element, const ZoCTrellanUpdater& updater)
{
    if (element.custom != 0 && updater.getOptions().disableCustomElements) {
        return ZoTState::CUSTOM;
    }
    if (element.isUpToDate) {
        return ZoTState::UP_TO_DATE;
    }
    if (element.isExcluded) {
        return ZoTState::EXCLUDED;
    }
    return updater.getAssignment().isTargetSupported() ? ZoTState::UPDATE : ZoTState::BLOCKED;
}

}  // namespace

ZoTState stateOf(const ZoSUpdateElement& element, const ZoCTrellanUpdater& updater)
{
    if (updater.getAssignment().fileOf(element) == nullptr) {
        return ZoTState::NO_FILE;
    }
    switch (element.updateState) {
        case PENDING:
            return updater.isBusy() ? ZoTState::UPDATE : ZoTState::NOT_STARTED;
        case RUNNING:
            return ZoTState::RUNNING;
        case FAILED:
            return ZoTState::FAILED;
        case CANCELLED:
            return ZoTState::CANCELLED;
        case FINISHED:
            return element.hasSucceeded() ? ZoTState::UPDATED : ZoTState::FAILED;
        default:
            return element.fileWasMissing ? ZoTState::MISSING_FILE : stateBeforeUpdate(element, updater);
    }
}

}  // namespace ZoNUpdateInspection
