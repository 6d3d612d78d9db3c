// Why a target is refused.
#pragma once

#include <functional>
#include <string>

#include "ZoITrellanInspector.h"

namespace TrellanTool {

class ElementRecords;

// Calls `take` with a line, without its end, for each element without a file for which the archive does not support the
// target, and its board.
void forEachBlockingElement(const ElementRecords& records, ZoITrellanInspector& inspector,
                            const std::function<void(const std::string&)>& take);

}  // namespace TrellanTool
