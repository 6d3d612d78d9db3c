#include "inspection/ErrorRecord.h"

#include "base/ErrorManager.h"

using ZoNTrellanInspector::ZoTError;

namespace ZoNUpdateInspection {

ZoTError errorOf(const ZoCErrorListPool& errors, unsigned index)
{
    ZoTError error{};
    error.hasCode = true;
    error.code = errors.getErrorCode(index);
    error.text = errors.getErrorText(index);
    error.originNode = errors.getOriginNode(index);
    error.time = static_cast<double>(errors.getTimeStamp(index)) * ZoNUpdateBase::errorManager().getTimeStampFactor();
    error.mainModule = errors.getMainModuleNumber(index);
    error.subModule = errors.getSubModuleNumber(index);
    error.function = errors.getFunctionName(index);
    error.line = errors.getLineNumber(index);
    return error;
}

}  // namespace ZoNUpdateInspection
