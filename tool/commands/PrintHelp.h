// Help and the tool's version, printed as text or as a document.
#pragma once

#include <iosfwd>

namespace TrellanTool {

struct Command;

// The help of a command or, for null, of the tool.
void tellHelp(std::ostream& out, const Command* command, bool asDocument);

void tellToolVersion(std::ostream& out, bool asDocument);

}  // namespace TrellanTool
