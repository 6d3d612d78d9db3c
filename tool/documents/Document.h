// The JSON documents of the commands that read: what the library's lists and its inspector say, for programs to read.
// docs/trellan-update.schema.json describes them.
#pragma once

#include <iosfwd>
#include <string>

#include "ZoITrellanInspector.h"
#include "tool/documents/DocumentWriter.h"

namespace TrellanTool {

struct Command;

// Writes the document of `command`, which the library carries out, to `out`. `updater` has applied it successfully.
// `printed` is what it then had to say.
void writeDocument(std::ostream& out, const Command& command, ZoITrellanUpdater& updater,
                   ZoITrellanInspector& inspector, const std::string& printed);

// Writes the document of the command that tells whether the device can be rebooted, as the library has told it.
void writeRebootDocument(std::ostream& out, const Command& command, bool supported, unsigned state);

// Writes a document that tells nothing but why `command` has done nothing.
void writeErrorDocument(std::ostream& out, const Command& command, const DocumentError& error);

}  // namespace TrellanTool
