// Numbers and texts one behind the other, in as few bytes as they need.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ZoNUpdateBase {

inline void addNumber(std::string& bytes, std::uint64_t number)
{
    for (; number >= 0x80; number >>= 7) {
        bytes += static_cast<char>(number | 0x80);
    }
    bytes += static_cast<char>(number);
}

inline void addText(std::string& bytes, std::string_view text)
{
    addNumber(bytes, text.size());
    bytes += text;
}

// Takes off what was added, in the same order.
class PackedReader {
public:
    PackedReader() = default;

    // `bytes` must outlive the reader and what it gives.
    explicit PackedReader(std::string_view bytes) : rest(bytes) {}

    const char* position() const { return rest.data(); }

    std::uint64_t number()
    {
        std::uint64_t number = 0;
        for (unsigned shift = 0;; shift += 7) {
            const auto byte = static_cast<unsigned char>(rest.front());
            rest.remove_prefix(1);
            number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if (byte < 0x80) {
                return number;
            }
        }
    }

    std::string_view text()
    {
        const std::size_t length = number();
        const std::string_view text = rest.substr(0, length);
        rest.remove_prefix(length);
        return text;
    }

private:
    std::string_view rest;
};

}  // namespace ZoNUpdateBase
