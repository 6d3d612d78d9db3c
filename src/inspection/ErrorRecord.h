// Errors of the platform, as hosts get them.
#pragma once

#include "ZoITrellanInspector.h"
#include "base/ErrorListHandle.h"

namespace ZoNUpdateInspection {

ZoNTrellanInspector::ZoTError errorOf(const ZoCErrorListPool& errors, unsigned index);

// Of errors that are kept as the platform has them, null when there are none: their number, and the one at `position`.
// Throws std::out_of_range.
unsigned countOf(const ZoNUpdateBase::ErrorListHandle& kept);
ZoNTrellanInspector::ZoTError errorAt(const ZoNUpdateBase::ErrorListHandle& kept, unsigned position);

// What there is to be kept of `errors`.
ZoNUpdateBase::ErrorListHandle keptOf(ZoNUpdateBase::ErrorListHandle errors);

}  // namespace ZoNUpdateInspection
