// ParameterValue: what a parameter of an item is: text, an unsigned number, or a number of another kind (negative,
// fractional, beyond 64 bits). A value that was read shares the document's memory.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "simulation/json/JsonArena.h"
#include "simulation/libZoInventoryTree/Document.h"

namespace TrellanSimulation {

class ParameterValue {
public:
    ParameterValue(const std::string& text) : bits(makeText(text)) {}
    ParameterValue(std::uint64_t number) : bits(makeUnsignedInteger(number)) {}

    ParameterValue(ParameterValue&& other) noexcept : bits(std::exchange(other.bits, 0)) {}
    ParameterValue& operator=(ParameterValue other) noexcept
    {
        std::swap(bits, other.bits);
        return *this;
    }
    ~ParameterValue() { releaseValue(bits); }

    // The text, or the number; nothing when it is something else. The text is good as long as the value stays as it is
    // and where it is.
    std::optional<std::string_view> text() const { return Json(bits).text(); }
    std::optional<std::uint64_t> number() const { return Json(bits).unsignedNumber(); }

private:
    JsonBits bits;
};

}  // namespace TrellanSimulation
