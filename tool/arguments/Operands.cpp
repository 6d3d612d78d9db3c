#include "tool/arguments/Operands.h"

#include <sstream>

#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Path.h"

namespace TrellanTool {

void takeOperands(Arguments& arguments, const std::vector<std::string>& operands)
{
    std::istringstream names(arguments.command->operands);
    std::size_t taken = 0;
    for (std::string name; names >> name;) {
        if (taken == operands.size()) {
            if (name.starts_with('[')) {
                return;
            }
            throw UsageError(name.substr(0, name.find('.')) + " is required");
        }
        if (name == "ARCHIVE") {
            arguments.options.archivePath = absolutePath(name, operands[taken++]);
            continue;
        }
        do {
            arguments.operands.push_back(operands[taken++]);
        } while (name.ends_with("...") && taken < operands.size());
    }
    if (taken < operands.size()) {
        throw UsageError("unexpected argument '" + operands[taken] + "'");
    }
}

}  // namespace TrellanTool
