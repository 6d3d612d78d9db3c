#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Help.h"
#include "tool/commands/Actions.h"

namespace TrellanTool {

int printHelp(const Arguments& arguments, const Streams& streams)
{
    streams.out << (arguments.operands.empty() ? toolHelp() : commandHelp(commandNamed(arguments.operands.front())));
    return SUCCESS;
}

}  // namespace TrellanTool
