// Which of several words somebody may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TrellanTool {

// The first of those `candidates` that `word` becomes with the fewest letters changed, added and taken away. There must
// be one.
const std::string& nearest(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace TrellanTool
