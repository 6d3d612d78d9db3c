// Comparing a JSON value with a text.
#pragma once

#include <string>
#include <string_view>

namespace TrellanJson {

// Whether `value` is this text. The operator == of nlohmann's values makes one of the text, and ends the process where
// there is no memory for it.
template <class Value>
bool isText(const Value& value, std::string_view text) noexcept
{
    const auto* const own = value.template get_ptr<const std::string*>();
    return own != nullptr && *own == text;
}

}  // namespace TrellanJson
