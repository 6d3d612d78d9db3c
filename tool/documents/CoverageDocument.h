// What an archive does for many targets, as a document and as text.
#pragma once

#include <iosfwd>

#include "tool/coverage/Coverage.h"
#include "tool/documents/DocumentWriter.h"

namespace TrellanTool {

// The members of the document, and its end.
void writeCoverage(DocumentWriter& writer, const Coverage& coverage);

// The same for people.
void writeCoverageText(std::ostream& out, const Coverage& coverage);

}  // namespace TrellanTool
