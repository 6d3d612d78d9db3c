// What the finished updates of a phase have reported.
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "operation/PendingElements.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateInventory;

void ZoCUpdateOperation::updateErrors(PhaseList& list)
{
    PendingElements pending(elements);
    updateErrors(list, pending);
}

void ZoCUpdateOperation::updateErrors(PhaseList& list, PendingElements& pending)
{
    unsigned counted = 0;
    unsigned errorsFound = 0;
    for (ZoSUpdateElement* const element : list) {
        switch (element->updateState) {
            case NOTHING_TO_DO:
            case PENDING:
            case CANCELLED:
                break;
            default:
                ++counted;
                errorsFound += collectErrors(*element, pending) ? 0 : 1;
                break;
        }
    }
    if (counted != 0) {
        updater->print(errorsFound != 0 ? "[ERROR]\n" : "[OK]\n");
    }
}

// Fetches the errors of the element's update. False when it failed or has any error; later updates of its board are
// cancelled then. A file on the flash drive has neither errors nor successors.
bool ZoCUpdateOperation::collectErrors(ZoSUpdateElement& element, PendingElements& pending)
{
    const bool isFinished = element.updateState == FINISHED;
    if (element.isFileSystemElement) {
        return isFinished;
    }
    if (isFinished) {
        ZoCInventoryManager::getInstance()->updateErrors2(*element.statusErrorList, element.boardAddress, lockHandle,
                                                          element.id, *element.resultErrorList, nullptr);
        if (element.hasSucceeded()) {
            return true;
        }
        updater->ReportFailure(element.index);
    }
    cancelUpdates(element.boardAddress, element.phase + 1, pending);
    return false;
}
