// A word that another may become, whole.
#pragma once

#include <string>

namespace TrellanTool {

struct Candidate {
    std::string word;
    std::string meaning;
};

}  // namespace TrellanTool
