// Numbers one behind the other, in as few bytes as they need.
#pragma once

#include <cstdint>
#include <string>

namespace TrellanTool {

inline void addPacked(std::string& bytes, std::uint64_t number)
{
    for (; number >= 0x80; number >>= 7) {
        bytes += static_cast<char>(number | 0x80);
    }
    bytes += static_cast<char>(number);
}

// The number at `position`, which is behind it then.
inline std::uint64_t takePacked(const std::string& bytes, std::size_t& position)
{
    std::uint64_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto byte = static_cast<unsigned char>(bytes[position++]);
        number |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if (byte < 0x80) {
            return number;
        }
    }
}

// The step from one number to another, up or down, as a number that is small when the step is.
inline std::uint64_t stepBetween(std::uint64_t before, std::uint64_t after)
{
    return after >= before ? 2 * (after - before) : 2 * (before - after) - 1;
}

inline std::uint64_t afterStep(std::uint64_t before, std::uint64_t step)
{
    return step % 2 == 0 ? before + step / 2 : before - (step + 1) / 2;
}

}  // namespace TrellanTool
