// What the exit statuses mean, for whoever tells it.
#pragma once

#include <string>
#include <vector>

namespace TrellanTool {

struct Command;

struct ExitMeaning {
    std::vector<int> statuses;
    std::string meaning;
};

// The statuses that a command may end with or, for null, those of all commands, in rising order.
std::vector<ExitMeaning> exitMeanings(const Command* command);

}  // namespace TrellanTool
