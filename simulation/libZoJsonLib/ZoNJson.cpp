// The values: construction, copies and type tests.
#include "libZoJsonLib/ZoNJson.h"

#include <utility>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

json::json() noexcept = default;

json::json(std::nullptr_t) noexcept {}

json::json(bool value) noexcept : kind(Kind::boolean)
{
    scalar.boolean = value;
}

json::json(int value) noexcept : json(static_cast<long long>(value)) {}

json::json(long value) noexcept : json(static_cast<long long>(value)) {}

json::json(long long value) noexcept : kind(Kind::integer)
{
    scalar.integer = value;
}

json::json(unsigned int value) noexcept : json(static_cast<unsigned long long>(value)) {}

json::json(unsigned long value) noexcept : json(static_cast<unsigned long long>(value)) {}

json::json(unsigned long long value) noexcept : kind(Kind::unsignedInteger)
{
    scalar.unsignedInteger = value;
}

json::json(const char* value) : json(std::string(value)) {}

json::json(const std::string& value) : json(Access::makeNode(Kind::string, value)) {}

json json::object()
{
    return Access::makeNode(Kind::object, Members{});
}

json json::array()
{
    return Access::makeNode(Kind::array, Elements{});
}

json::json(const json& other) : kind(other.kind), scalar(other.scalar), node(Access::nodeForCopy(other)) {}

// A value that was moved from is null, since it has no node any more.
json::json(json&& other) noexcept
    : kind(std::exchange(other.kind, Kind::null)),
      handedOut(std::exchange(other.handedOut, false)),
      scalar(other.scalar),
      node(std::move(other.node))
{
}

// By way of a temporary, also when moving: `other` may be this value, a part of it, or (when copying) the whole.
json& json::operator=(const json& other)
{
    return *this = json(other);
}

json& json::operator=(json&& other) noexcept
{
    json moved(std::move(other));
    kind = moved.kind;
    handedOut = moved.handedOut;
    scalar = moved.scalar;
    node.swap(moved.node);
    return *this;
}

json::~json() = default;

bool json::is_invalid() const noexcept
{
    return kind == Kind::invalid;
}

bool json::is_null() const noexcept
{
    return kind == Kind::null;
}

bool json::is_boolean() const noexcept
{
    return kind == Kind::boolean;
}

bool json::is_string() const noexcept
{
    return kind == Kind::string;
}

bool json::is_array() const noexcept
{
    return kind == Kind::array;
}

bool json::is_object() const noexcept
{
    return kind == Kind::object;
}

bool json::is_number() const noexcept
{
    return kind == Kind::integer || kind == Kind::unsignedInteger || kind == Kind::real;
}

bool json::is_number_unsigned() const noexcept
{
    return kind == Kind::unsignedInteger;
}

}  // namespace ZoNJson
