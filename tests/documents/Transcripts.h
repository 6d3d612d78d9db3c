// The examples of a Markdown document, run as they stand there:
//
//   ```json NAME   a block whose fence names a file is written to that file
//
//   ```console     the lines that begin with "$ " are run by a shell, in a folder that all blocks share; the lines
//   $ COMMAND      behind each are what it prints on standard output. A command goes on behind "\" at a line's end.
//   OUTPUT
//
// Other blocks are text like the rest.
#pragma once

#include <string>
#include <vector>

#include "documents/ExampleFolder.h"

// A command of a document.
struct DocumentedCommand {
    std::string text;       // with its line number: "12: trellan-update version"
    std::string shown;      // what the document says that it prints
    ProcessResult present;  // what it did now
};

struct DocumentRun {
    std::vector<DocumentedCommand> commands;
    std::string text;  // the document with what the commands print now
};

// Runs the examples of `document` in `folder`, from the first to the last.
DocumentRun runExamples(const std::string& document, const ExampleFolder& folder);
