// The name at the end of a list that is being typed.
#pragma once

#include <string>
#include <vector>

#include "tool/completion/Candidate.h"

namespace TrellanTool {

// What `list` may become, names separated by commas and/or blanks of which the last is perhaps not whole: for each of
// `names` that goes on from there, and is not in the list before, the list with it. A name may have blanks and commas
// itself.
std::vector<Candidate> completedLists(const std::string& list, const std::vector<Candidate>& names);

}  // namespace TrellanTool
