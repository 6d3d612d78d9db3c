#include "tool/documents/TextTable.h"

#include <locale.h>

#include <algorithm>
#include <cstddef>
#include <cwchar>

#include "json/TerminalText.h"

namespace TrellanTool {

namespace {

// Within its life texts are UTF-8, whatever language the user has set.
class TextsAreUtf8 {
public:
    TextsAreUtf8() : before(::uselocale(utf8())) {}
    ~TextsAreUtf8() { ::uselocale(before); }
    TextsAreUtf8(const TextsAreUtf8&) = delete;
    TextsAreUtf8& operator=(const TextsAreUtf8&) = delete;

private:
    static locale_t utf8()
    {
        static const locale_t always = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return always;
    }

    const locale_t before;
};

// In columns of a terminal: an ideograph takes two, an accent on the character before it none.
std::size_t widthOf(const std::string& cell)
{
    const TextsAreUtf8 utf8;
    const std::string shown = TrellanJson::withControlCharactersShown(cell);
    std::size_t width = 0;
    for (std::size_t at = 0; at < shown.size();) {
        wchar_t character = 0;
        std::mbstate_t begin = {};
        const std::size_t length = std::mbrtowc(&character, &shown[at], shown.size() - at, &begin);
        const bool isCharacter = length != 0 && length <= shown.size() - at;
        const int columns = isCharacter ? ::wcwidth(character) : -1;
        width += columns < 0 ? 1 : static_cast<std::size_t>(columns);
        at += isCharacter ? length : 1;
    }
    return width;
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
