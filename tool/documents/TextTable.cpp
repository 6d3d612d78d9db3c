#include "tool/documents/TextTable.h"

#include <algorithm>
#include <cstddef>

#include "tool/OutputBuffer.h"

namespace TrellanTool {

namespace {

// In characters, as a terminal is shown them.
std::size_t widthOf(const std::string& cell)
{
    const std::string shown = withControlCharactersShown(cell);
    return static_cast<std::size_t>(std::count_if(shown.begin(), shown.end(), [](char byte) {
        const bool continuesCharacter = (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
        return !continuesCharacter;
    }));
}

std::vector<std::size_t> columnWidths(const std::vector<TableRow>& rows)
{
    std::vector<std::size_t> widths;
    for (const TableRow& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], widthOf(row[i]));
        }
    }
    return widths;
}

std::string ruleUnder(const std::vector<std::size_t>& widths)
{
    std::size_t width = widths.empty() ? 0 : 3 * (widths.size() - 1);
    for (const std::size_t column : widths) {
        width += column;
    }
    return std::string(width, '-') + '\n';
}

}  // namespace

std::string onOneLine(std::string_view text)
{
    std::string line;
    line.reserve(text.size());
    for (const char character : text) {
        switch (character) {
            case '\n':
                line += "\\x0a";
                break;
            case '\r':
                line += "\\x0d";
                break;
            case '\t':
                line += "\\x09";
                break;
            default:
                line += character;
        }
    }
    return line;
}

std::string tableText(const std::vector<TableRow>& rows, bool isRuled)
{
    std::vector<TableRow> shown = rows;
    for (TableRow& row : shown) {
        for (std::string& cell : row) {
            cell = onOneLine(cell);
        }
    }
    const std::vector<std::size_t> widths = columnWidths(shown);
    std::string text;
    for (const TableRow& row : shown) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            text += i == 0 ? "" : " | ";
            text += row[i];
            text.append(i + 1 < row.size() ? widths[i] - widthOf(row[i]) : 0, ' ');
        }
        text += '\n';
        if (isRuled && &row == shown.data()) {
            text += ruleUnder(widths);
        }
    }
    return text;
}

}  // namespace TrellanTool
