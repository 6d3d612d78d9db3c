// What the inspector tells of errors that are of no element.
#include <algorithm>
#include <stdexcept>

#include "base/ErrorManager.h"
#include "inspection/ErrorRecord.h"
#include "inspection/ZoCTrellanInspector.h"
#include "operation/ZoCUpdateOperation.h"

using ZoNTrellanInspector::ZoTError;

unsigned ZoCTrellanInspector::getGeneralErrorCount()
{
    const unsigned count = ZoNUpdateBase::errorManager().getMasterErrorList().getErrorCount();
    return std::min(count, updater.getOperation().getErrorCountAtUnlock().value_or(count));
}

const ZoTError& ZoCTrellanInspector::getGeneralError(unsigned position)
{
    if (position >= getGeneralErrorCount()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such error");
    }
    generalError = ZoNUpdateInspection::errorOf(ZoNUpdateBase::errorManager().getMasterErrorList(), position);
    return generalError;
}
