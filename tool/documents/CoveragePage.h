// What an archive does for many targets, as a page for a browser.
#pragma once

#include <iosfwd>
#include <string_view>

#include "tool/coverage/Coverage.h"

namespace TrellanTool {

// The page as it stands in tool/documents/CoveragePage.html, with a place for the document.
extern const std::string_view coveragePageText;

// Writes one page without outside parts, which makes everything that it shows from the JSON document of `coverage` that
// stands in it. No name can end that place or be taken for a part of the page.
void writeCoveragePage(std::ostream& out, const Coverage& coverage);

}  // namespace TrellanTool
