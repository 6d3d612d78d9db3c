// Errors of the platform, as hosts get them.
#pragma once

#include "ZoITrellanInspector.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"

namespace ZoNUpdateInspection {

ZoNTrellanInspector::ZoTError errorOf(const ZoCErrorListPool& errors, unsigned index);

}  // namespace ZoNUpdateInspection
