// Texts of documents at a terminal: what they hold must not drive it.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace TrellanJson {

// A character of several bytes in UTF-8: what its first and second byte may be, and how many there are. The others are
// 0x80 to 0xBF.
struct LongForm {
    unsigned char firstFrom, firstTo;
    unsigned char secondFrom, secondTo;
    std::size_t length;
};

inline constexpr LongForm longForms[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3},
    {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};

inline bool isBetween(unsigned char byte, unsigned char from, unsigned char to)
{
    return byte >= from && byte <= to;
}

// The length of the character of several bytes that `text`, which is not empty, begins with; more than the text has
// where it ends within the character; 0 when it begins with none.
inline std::size_t longCharacter(std::string_view text)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto* const form = std::find_if(std::begin(longForms), std::end(longForms), [&](const LongForm& known) {
        return isBetween(byteAt(0), known.firstFrom, known.firstTo);
    });
    if (form == std::end(longForms) || (text.size() > 1 && !isBetween(byteAt(1), form->secondFrom, form->secondTo))) {
        return 0;
    }
    for (std::size_t i = 2; i < std::min(form->length, text.size()); ++i) {
        if (!isBetween(byteAt(i), 0x80, 0xBF)) {
            return 0;
        }
    }
    return form->length;
}

inline void appendShown(std::string& shown, unsigned char byte)
{
    constexpr const char* digits = "0123456789abcdef";
    shown.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
}

// Of a byte that belongs to no character of several bytes.
inline bool isControl(unsigned char byte)
{
    return (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t') || isBetween(byte, 0x7F, 0x9F);
}

// U+0080 to U+009F.
inline bool isLongControl(std::string_view character)
{
    return character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) <= 0x9F;
}

// The text with each byte of a control character as \xNN, in small letters: of those below 0x20 except line end,
// carriage return and tab, of DEL, and of U+0080 to U+009F, in UTF-8 or as a single byte where that is part of no
// character.
inline std::string withControlCharactersShown(std::string_view text)
{
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = longCharacter(text);
        const bool isLong = length != 0 && length <= text.size();
        const std::string_view character = text.substr(0, isLong ? length : 1);
        if (isLong ? isLongControl(character) : isControl(static_cast<unsigned char>(character[0]))) {
            for (const char byte : character) {
                appendShown(shown, static_cast<unsigned char>(byte));
            }
        } else {
            shown += character;
        }
        text.remove_prefix(character.size());
    }
    return shown;
}

}  // namespace TrellanJson
