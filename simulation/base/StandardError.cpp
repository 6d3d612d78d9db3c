#include "simulation/base/StandardError.h"

#include <ext/stdio_sync_filebuf.h>
#include <unistd.h>

#include <iostream>

namespace TrellanSimulation {

namespace {

// No host has put a buffer of its own there, as is so while libraries are loaded.
bool isPlainTerminal()
{
    return dynamic_cast<__gnu_cxx::stdio_sync_filebuf<char>*>(std::cerr.rdbuf()) != nullptr &&
           ::isatty(STDERR_FILENO) == 1;
}

// Also one of U+0080 to U+009F, by its second byte in UTF-8, and as a byte that follows none of a longer character.
bool isControl(unsigned char before, unsigned char byte)
{
    const bool isLong = byte >= 0x80 && byte <= 0x9F && (before < 0x80 || (before >= 0xC0 && before <= 0xC2));
    return isLong || byte == 0x7F || (byte < ' ' && byte != '\n' && byte != '\r' && byte != '\t');
}

std::string withControlCharactersShown(const std::string& text)
{
    constexpr const char* digits = "0123456789abcdef";
    std::string shown;
    unsigned char before = 0;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (isControl(before, byte)) {
            shown.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
        } else {
            shown += character;
        }
        before = byte;
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
