// The characters of a text, looked at one by one and named so that a person can find them.
#include "inspection/CharacterRules.h"

#include <array>
#include <cstdio>
#include <string_view>

#include "base/QuotedText.h"
#include "inspection/Check.h"
#include "operation/PathChecks.h"

namespace ZoNUpdateInspection {
namespace {

using Severity = Check::Severity;
using ZoNUpdateBase::inQuotes;

std::string codePoint(unsigned number)
{
    std::array<char, 16> text;
    return std::string(text.data(),
                       static_cast<std::size_t>(std::snprintf(text.data(), text.size(), "U+%04X", number)));
}

bool isControl(unsigned char byte)
{
    return byte < ' ' || byte == 0x7F;
}

// U+0080 to U+009F have two bytes in UTF-8, the second of which is the number.
bool isLongControl(unsigned char first, unsigned char second)
{
    return first == 0xC2 && second >= 0x80 && second <= 0x9F;
}

std::string whatIs(const Place& place)
{
    return place.member == std::string_view("name") ? "name" : "path";
}

// The first control character by its number; empty when there is none.
std::string firstControlCharacter(const std::string& text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 'x');
        if (isControl(byte)) {
            return codePoint(byte);
        }
        if (isLongControl(byte, next)) {
            return codePoint(next);
        }
    }
    return {};
}

// The first character that a shell does not take literally, for a person to read; empty when there is none.
std::string firstSpecialCharacter(const std::string& text)
{
    for (const char character : text) {
        if (!isLiteralForShell(std::string_view(&character, 1))) {
            const auto byte = static_cast<unsigned char>(character);
            if (character == ' ') {
                return "a blank";
            }
            return "the character " + (isControl(byte) ? codePoint(byte) : "'" + std::string(1, character) + "'");
        }
    }
    return {};
}

}  // namespace

void checkControlCharacters(Check& check, const Place& place, const std::string& text)
{
    if (const std::string character = firstControlCharacter(text); !character.empty()) {
        check.report("control-character", Severity::WARNING, place,
                     "the " + whatIs(place) + " has the control character " + character + ": leave it out");
    }
}

void checkShellCharacters(Check& check, const Place& place, const std::string& text, const std::string& path)
{
    if (isLiteralPath(path)) {
        return;
    }
    if (const std::string inText = firstSpecialCharacter(text); !inText.empty()) {
        check.report(
            "shell-character", Severity::ERROR, place,
            "the " + whatIs(place) + " of a file for the flash drive must not have " + inText + ": choose another one");
    } else if (const std::string inPath = firstSpecialCharacter(path); !inPath.empty()) {
        check.report("shell-character", Severity::ERROR, place,
                     "the path " + inQuotes(path) + " of a file for the flash drive must not have " + inPath +
                         ": move the archive to another folder");
    } else {
        check.report("shell-character", Severity::ERROR, place,
                     "the path " + inQuotes(path) +
                         " of a file for the flash drive must not begin with '-': name the archive's "
                         "folder by its absolute path");
    }
}

}  // namespace ZoNUpdateInspection
