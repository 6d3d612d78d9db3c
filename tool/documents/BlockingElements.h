// Why a target is refused.
#pragma once

#include <string>

#include "ZoITrellanInspector.h"

namespace TrellanTool {

// The elements without a file for which the archive does not support the target, with their boards: a line for each,
// without a line end behind the last.
std::string blockingElements(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector);

}  // namespace TrellanTool
