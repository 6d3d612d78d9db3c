// Tables for people to read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace TrellanTool {

// The text with line ends, carriage returns and tabs as \x0a, \x0d and \x09: a name may have them, and would break a
// line or a table.
std::string onOneLine(std::string_view text);

using TableRow = std::vector<std::string>;

// The rows as lines, the columns below each other, between bars; a cell is as wide as a terminal shows it, and stands
// on one line whatever is in it. The last cell of a row is not filled up. `isRuled`: a rule stands under the first row.
std::string tableText(const std::vector<TableRow>& rows, bool isRuled);

}  // namespace TrellanTool
