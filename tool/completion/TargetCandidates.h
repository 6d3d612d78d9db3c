// What a target has that options name.
#pragma once

#include <vector>

#include "tool/completion/Candidate.h"

namespace TrellanTool {

struct Arguments;
enum class Value;

// The values of this kind on the target that `typed` names, each once, in the target's order; of its elements those
// that the filters of `typed` select. None where no target is named or it cannot be read. May throw what derives from
// std::exception.
std::vector<Candidate> candidatesOnTarget(Value kind, const Arguments& typed);

}  // namespace TrellanTool
