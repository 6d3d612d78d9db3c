#include "tool/commands/PrintHelp.h"

#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Help.h"
#include "tool/commands/Actions.h"
#include "tool/documents/HelpDocument.h"

namespace TrellanTool {

void tellHelp(std::ostream& out, const Command* command, bool asDocument)
{
    if (asDocument) {
        writeHelpDocument(out, command);
    } else {
        out << (command == nullptr ? toolHelp() : commandHelp(*command));
    }
}

void tellToolVersion(std::ostream& out, bool asDocument)
{
    if (asDocument) {
        writeToolVersionDocument(out, TRELLAN_TOOL_VERSION);
    } else {
        out << "trellan-update " TRELLAN_TOOL_VERSION "\n";
    }
}

int printHelp(const Arguments& arguments, const Streams& streams)
{
    tellHelp(streams.out, arguments.operands.empty() ? nullptr : &commandNamed(arguments.operands.front()),
             arguments.json);
    return SUCCESS;
}

}  // namespace TrellanTool
