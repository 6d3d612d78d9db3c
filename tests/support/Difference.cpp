// The texts are compared line by line, up to the first difference.
#include "support/Difference.h"

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr std::size_t context = 3;

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size() - 1) + 1;
        lines.push_back(text.substr(start, end - start));
        start = end;
    }
    return lines;
}

std::string escaped(unsigned char character)
{
    switch (character) {
        case '\n':
            return "$";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            break;
    }
    if (character >= 0x20 && character != 0x7F) {
        return std::string(1, static_cast<char>(character));
    }
    char text[8];
    std::snprintf(text, sizeof text, "\\x%02X", character);
    return text;
}

std::string shown(const std::vector<std::string>& lines, std::size_t from, std::size_t to, const char* mark)
{
    std::string text;
    for (std::size_t i = from; i < std::min(to, lines.size()); ++i) {
        text += mark;
        for (const char character : lines[i]) {
            text += escaped(static_cast<unsigned char>(character));
        }
        text += '\n';
    }
    return text;
}

}  // namespace

std::string difference(const std::string& expected, const std::string& actual)
{
    if (expected == actual) {
        return "";
    }
    const std::vector<std::string> wanted = linesOf(expected);
    const std::vector<std::string> given = linesOf(actual);
    std::size_t first = 0;
    while (first < std::min(wanted.size(), given.size()) && wanted[first] == given[first]) {
        ++first;
    }
    return "line " + std::to_string(first + 1) + " (- expected, + actual; line ends are shown as $):\n" +
           shown(wanted, first - std::min(first, context), first, "  ") + shown(wanted, first, first + context, "- ") +
           shown(given, first, first + context, "+ ");
}
