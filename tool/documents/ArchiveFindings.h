// All that is wrong with an archive, or worth a word, whatever the target.
#pragma once

#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/documents/Findings.h"

namespace TrellanTool {

// What the check of the whole archive (checkArchive), which ended with `read`, has found by `inspector` and in
// `description`, the text of the description: also where it is no JSON, what stands in it twice, and what the format
// does not have. In the order of the description.
std::vector<Finding> archiveFindings(ZoITrellanInspector& inspector, ZoNTrellanInspector::ZoTDescription read,
                                     const std::string& description);

}  // namespace TrellanTool
