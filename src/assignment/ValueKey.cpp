#include "assignment/ValueKey.h"

using ZoNJson::json;

namespace ZoNUpdateAssignment {

// The length goes before the text, which may hold any character.
std::string textKey(const std::string& text)
{
    return std::to_string(text.size()) + ":" + text;
}

std::string numberKey(unsigned long long number)
{
    return std::to_string(number) + ";";
}

std::string valueKey(const json& value)
{
    if (value.is_null()) {
        return "null";
    }
    if (value.is_string()) {
        return textKey(std::string(value));
    }
    return value.is_number_unsigned() ? numberKey(static_cast<unsigned long long>(value)) : "";
}

bool states(const json& property, const std::string& key)
{
    return !key.empty() && anyValue(property, [&](const json& value) { return valueKey(value) == key; });
}

}  // namespace ZoNUpdateAssignment
