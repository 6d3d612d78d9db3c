// The values: construction, copies and type tests.
#include "libZoJsonLib/ZoNJson.h"

#include <utility>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

using namespace TrellanSimulation;

json::json() noexcept = default;

json::json(std::nullptr_t) noexcept {}

json::json(bool value) noexcept : bits(bitsOf(JsonTag::boolean, value ? 1 : 0)) {}

json::json(int value) noexcept : bits(makeInteger(value)) {}

json::json(long value) : bits(makeInteger(value)) {}

json::json(long long value) : bits(makeInteger(value)) {}

json::json(unsigned int value) noexcept : bits(makeUnsignedInteger(value)) {}

json::json(unsigned long value) : bits(makeUnsignedInteger(value)) {}

json::json(unsigned long long value) : bits(makeUnsignedInteger(value)) {}

json::json(const char* value) : bits(makeText(value)) {}

json::json(const std::string& value) : bits(makeText(value)) {}

json json::object()
{
    return Access::adopt(bitsOf(JsonTag::object));
}

json json::array()
{
    return Access::adopt(bitsOf(JsonTag::array));
}

json::json(const json& other) : bits(Access::copy(other.bits)) {}

json::json(json&& other) noexcept : bits(std::exchange(other.bits, 0)) {}

// By way of a temporary, also when moving: `other` may be this value, a part of it, or (when copying) the whole.
json& json::operator=(const json& other)
{
    return *this = json(other);
}

json& json::operator=(json&& other) noexcept
{
    json moved(std::move(other));
    std::swap(bits, moved.bits);
    return *this;
}

json::~json()
{
    Access::release(bits);
}

bool json::is_invalid() const noexcept
{
    return tagOf(bits) == JsonTag::invalid;
}

bool json::is_null() const noexcept
{
    return tagOf(bits) == JsonTag::null;
}

bool json::is_boolean() const noexcept
{
    return tagOf(bits) == JsonTag::boolean;
}

bool json::is_string() const noexcept
{
    return isText(bits);
}

bool json::is_array() const noexcept
{
    return tagOf(bits) == JsonTag::array || tagOf(bits) == JsonTag::ownArray;
}

bool json::is_object() const noexcept
{
    return tagOf(bits) == JsonTag::object || tagOf(bits) == JsonTag::ownObject;
}

bool json::is_number() const noexcept
{
    return isInteger(bits) || isUnsignedInteger(bits) || isReal(bits);
}

bool json::is_number_unsigned() const noexcept
{
    return isUnsignedInteger(bits);
}

}  // namespace ZoNJson
