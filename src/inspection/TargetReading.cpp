// The inspector's reading of further targets with one archive.
#include <utility>

#include "inspection/ErrorRecord.h"
#include "inspection/Explanation.h"
#include "inspection/FileKeys.h"
#include "inspection/ZoCTrellanInspector.h"
#include "inventory/InventoryRecord.h"

using ZoNTrellanInspector::ZoTError;

unsigned ZoCTrellanInspector::readTarget()
{
    targetErrors.reset();
    explained.reset();  // its candidates are elements of before
    ZoNUpdateBase::ErrorListHandle errors = ZoNUpdateBase::makeErrorList();
    const unsigned result = updater.readTargetAgain(*errors);
    targetErrors = ZoNUpdateInspection::keptOf(std::move(errors));
    return result;
}

unsigned ZoCTrellanInspector::getTargetErrorCount()
{
    return ZoNUpdateInspection::countOf(targetErrors);
}

const ZoTError& ZoCTrellanInspector::getTargetError(unsigned position)
{
    targetError = ZoNUpdateInspection::errorAt(targetErrors, position);
    return targetError;
}
