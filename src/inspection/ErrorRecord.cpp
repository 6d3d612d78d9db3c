#include "inspection/ErrorRecord.h"

#include <stdexcept>
#include <utility>

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

unsigned countOf(const ZoNUpdateBase::ErrorListHandle& kept)
{
    return kept ? kept->getErrorCount() : 0;
}

ZoTError errorAt(const ZoNUpdateBase::ErrorListHandle& kept, unsigned position)
{
    if (position >= countOf(kept)) {
        throw std::out_of_range("ZoITrellanInspector: there is no such error");
    }
    return errorOf(*kept, position);
}

ZoNUpdateBase::ErrorListHandle keptOf(ZoNUpdateBase::ErrorListHandle errors)
{
    return countOf(errors) != 0 ? std::move(errors) : nullptr;
}

}  // namespace ZoNUpdateInspection
