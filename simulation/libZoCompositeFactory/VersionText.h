// The text form of a version, read and written (see ZoCVersion for the forms).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace VersionText {

struct Numbers {
    std::uint8_t mar = 0;
    std::uint8_t mir = 0;
    std::uint8_t mai = 0;
    std::uint8_t spb = 0;
    std::uint16_t spn = 0;
    std::uint16_t plv = 0;
};

// The numbers that `text` stands for; nothing when it is not exactly one of the text forms.
std::optional<Numbers> parse(std::string_view text);

// The text form of `numbers`.
std::string textOf(const Numbers& numbers);

}  // namespace VersionText
