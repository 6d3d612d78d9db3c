// What stands behind a command.
#pragma once

#include <string>
#include <vector>

namespace TrellanTool {

struct Arguments;

// Takes the operands of the command that `arguments` has already: ARCHIVE into its options, made absolute, the others
// into its operands. Throws UsageError where one is missing or superfluous.
void takeOperands(Arguments& arguments, const std::vector<std::string>& operands);

}  // namespace TrellanTool
