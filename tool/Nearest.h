// Which of several words somebody may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TrellanTool {

// The first of those `candidates` that `word` becomes with the fewest letters changed, added, taken away and swapped
// with their next. There must be one.
const std::string& nearest(std::string_view word, const std::vector<std::string>& candidates);

// The question whether that one was meant ("; did you mean 'update'?") where it begins with `word`, of at least two
// letters, or becomes it with fewer letters changed, added and taken away than half of the longer one's; otherwise
// nothing, as where it has more than 100. Dashes at the start are no letters. There must be a candidate.
std::string didYouMean(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace TrellanTool
