#include "tool/documents/CoveragePage.h"

#include <ostream>

#include "tool/documents/CoverageDocument.h"

namespace TrellanTool {

namespace {

constexpr std::string_view place = "@DOCUMENT@";
constexpr std::string_view lineSeparator = "\xE2\x80\xA8";
constexpr std::string_view paragraphSeparator = "\xE2\x80\xA9";

// Writes a piece of JSON so that it may stand in a script of a page. Line ends stand between the values only, and what
// is replaced stands in strings only.
void writeForPage(std::ostream& out, std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string_view rest = text.substr(i);
        if (text[i] == '\n') {
            while (i + 1 < text.size() && text[i + 1] == ' ') {
                ++i;
            }
        } else if (text[i] == '<') {
            out << "\\u003c";
        } else if (rest.starts_with(lineSeparator) || rest.starts_with(paragraphSeparator)) {
            out << (rest.starts_with(lineSeparator) ? "\\u2028" : "\\u2029");
            i += lineSeparator.size() - 1;
        } else {
            out << text[i];
        }
    }
}

}  // namespace

void writeCoveragePage(std::ostream& out, const Coverage& coverage)
{
    const std::size_t begin = coveragePageText.find(place);
    out << coveragePageText.substr(0, begin);
    DocumentWriter writer([&out](std::string_view text) { writeForPage(out, text); }, "coverage");
    writeCoverage(writer, coverage);
    out << coveragePageText.substr(begin + place.size());
}

}  // namespace TrellanTool
