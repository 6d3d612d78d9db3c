// The inspector's reading of further targets with one archive.
#include <stdexcept>

#include "base/ErrorListHandle.h"
#include "inspection/ErrorRecord.h"
#include "inspection/Explanation.h"
#include "inspection/FileKeys.h"
#include "inspection/ZoCTrellanInspector.h"
#include "inventory/InventoryRecord.h"

using ZoNTrellanInspector::ZoTError;

unsigned ZoCTrellanInspector::readTarget()
{
    targetErrors.clear();
    explained.reset();  // its candidates are elements of before
    const ZoNUpdateBase::ErrorListHandle errors = ZoNUpdateBase::makeErrorList();
    const unsigned result = updater.readTargetAgain(*errors);
    for (unsigned i = 0; i < errors->getErrorCount(); ++i) {
        targetErrors.push_back(ZoNUpdateInspection::errorOf(*errors, i));
    }
    return result;
}

unsigned ZoCTrellanInspector::getTargetErrorCount()
{
    return static_cast<unsigned>(targetErrors.size());
}

const ZoTError& ZoCTrellanInspector::getTargetError(unsigned position)
{
    if (position >= targetErrors.size()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such error");
    }
    targetError = targetErrors[position];
    return targetError;
}
