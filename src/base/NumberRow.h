// Numbers that stand for the values that elements have.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace ZoNUpdateBase {

using Number = std::uint32_t;

// Of the properties that files state as lists, the board type aside.
constexpr std::size_t listedProperties = 4;
using NumberRow = std::array<Number, listedProperties>;

}  // namespace ZoNUpdateBase
