// What help says, as documents.
#pragma once

#include <iosfwd>

namespace TrellanTool {

struct Command;

// Writes the document of the help of a command or, for null, of the tool, as docs/trellan-update.schema.json describes
// it.
void writeHelpDocument(std::ostream& out, const Command* command);

// Writes the document that tells the tool's version, `text` such as "1.0.0".
void writeToolVersionDocument(std::ostream& out, const char* text);

}  // namespace TrellanTool
