#include "simulation/base/StandardError.h"

#include <ext/stdio_sync_filebuf.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <string_view>

namespace TrellanSimulation {

namespace {

// No host has put a buffer of its own there, as is so while libraries are loaded.
bool isPlainTerminal()
{
    return dynamic_cast<__gnu_cxx::stdio_sync_filebuf<char>*>(std::cerr.rdbuf()) != nullptr &&
           ::isatty(STDERR_FILENO) == 1;
}

bool isControl(unsigned char byte)
{
    return (byte < ' ' && byte != '\n' && byte != '\r' && byte != '\t') || (byte >= 0x7F && byte <= 0x9F);
}

// The length of the character of several bytes in UTF-8 that `text` begins with; 0 when it begins with none.
std::size_t longCharacter(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t length = first < 0xC2 || first > 0xF4 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    const std::string_view behind = text.substr(1, length == 0 ? 0 : length - 1);
    const bool isWhole = length != 0 && behind.size() == length - 1 &&
                         std::all_of(behind.begin(), behind.end(), [](char each) { return (each & 0xC0) == 0x80; });
    return isWhole ? length : 0;
}

std::string withControlCharactersShown(std::string_view text)
{
    constexpr const char* digits = "0123456789abcdef";
    std::string shown;
    while (!text.empty()) {
        const std::size_t length = longCharacter(text);
        const std::string_view character = text.substr(0, std::max<std::size_t>(length, 1));
        const auto last = static_cast<unsigned char>(character.back());
        if (length == 0 ? isControl(last) : character[0] == '\xC2' && last <= 0x9F) {  // U+0080 to U+009F
            for (const char each : character) {
                const auto byte = static_cast<unsigned char>(each);
                shown.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
            }
        } else {
            shown += character;
        }
        text.remove_prefix(character.size());
    }
    return shown;
}

}  // namespace

void tellOnStandardError(const std::string& text)
{
    [[maybe_unused]] const std::ios_base::Init stream;  // nothing else says that it is there while libraries are loaded
    std::cerr << (isPlainTerminal() ? withControlCharactersShown(text) : text) + '\n' << std::flush;
}

}  // namespace TrellanSimulation
