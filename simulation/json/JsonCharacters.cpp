// Nearly all blocks of a text are plain ASCII, of which the compiler looks at sixteen bytes at a time.
#include "simulation/json/JsonCharacters.h"

#include <rapidjson/encodings.h>
#include <rapidjson/stream.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace TrellanSimulation {

namespace {

constexpr std::size_t blockSize = 512;

// What is among the bytes of a block: each 0 when there is none.
struct Found {
    std::uint8_t beyondAscii = 0;
    std::uint8_t refused = 0;
    std::uint8_t backslash = 0;
};

Found look(const char* block)
{
    std::uint8_t bits = 0;
    Found found;
    for (std::size_t i = 0; i < blockSize; ++i) {
        const auto byte = static_cast<std::uint8_t>(block[i]);
        bits |= byte;
        found.refused |= static_cast<std::uint8_t>(byte == 0);
        found.refused |= static_cast<std::uint8_t>(static_cast<std::uint8_t>(byte - 0x1A) <= 0x1F - 0x1A);
        found.backslash |= static_cast<std::uint8_t>(byte == '\\');
    }
    found.beyondAscii = bits & 0x80;
    return found;
}

Found lookAtLast(const char* at, std::size_t bytes)
{
    std::array<char, blockSize> block;
    block.fill(' ');
    std::memcpy(block.data(), at, bytes);
    return look(block.data());
}

struct Nowhere {
    void Put(char) {}
};

// Goes on from `at` over whole characters until `end` is reached; null where one is invalid. Behind the text is a NUL,
// with which no character goes on.
const char* skipCharacters(const char* at, const char* end)
{
    Nowhere nowhere;
    while (at < end) {
        if (static_cast<unsigned char>(*at) < 0x80) {
            ++at;
            continue;
        }
        rapidjson::StringStream stream(at);
        if (!rapidjson::UTF8<>::Validate(stream, nowhere)) {
            return nullptr;
        }
        at += stream.Tell();
    }
    return at;
}

}  // namespace

JsonCharacters charactersOf(const std::string& text)
{
    JsonCharacters characters;
    const char* const end = text.data() + text.size();
    const char* checked = text.data();  // up to where characters beyond ASCII are valid
    for (const char* block = text.data(); block < end; block += std::min<std::ptrdiff_t>(blockSize, end - block)) {
        const auto left = static_cast<std::size_t>(end - block);
        const Found found = left < blockSize ? lookAtLast(block, left) : look(block);
        if (found.beyondAscii != 0) {
            checked = skipCharacters(std::max(checked, block), block + std::min(blockSize, left));
        }
        if (found.refused != 0 || checked == nullptr) {
            return {.valid = false, .hasBackslash = false};
        }
        characters.hasBackslash |= found.backslash != 0;
    }
    return characters;
}

}  // namespace TrellanSimulation
