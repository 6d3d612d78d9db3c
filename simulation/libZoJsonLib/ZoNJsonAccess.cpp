// The values: members, elements and conversions.
#include <algorithm>
#include <limits>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

namespace {

const json& nullValue()
{
    static const json value;
    return value;
}

void require(bool condition, const char* message)
{
    if (!condition) {
        throw type_error(message);
    }
}

template <typename Key>
const json& memberOf(const json& object, const Key& key)
{
    require(object.is_object(), "a JSON value with members must be an object");
    const auto& members = Access::content<Members>(object);
    const auto found = members.find(key);
    return found == members.end() ? nullValue() : found->second;
}

// The number, or the largest that the type can hold.
template <typename Number>
Number atMost(unsigned long long number)
{
    return static_cast<Number>(std::min<unsigned long long>(number, std::numeric_limits<Number>::max()));
}

}  // namespace

std::size_t json::size() const noexcept
{
    if (is_array()) {
        return Access::content<Elements>(*this).size();
    }
    if (is_object()) {
        return Access::content<Members>(*this).size();
    }
    return 0;
}

bool json::contains(const std::string& key) const
{
    return is_object() && Access::content<Members>(*this).count(key) != 0;
}

const json& json::operator[](const char* key) const
{
    return memberOf(*this, key);
}

const json& json::operator[](const std::string& key) const
{
    return memberOf(*this, key);
}

json& json::operator[](const char* key)
{
    return (*this)[std::string(key)];
}

json& json::operator[](const std::string& key)
{
    if (is_null()) {
        *this = object();
    }
    require(is_object(), "a JSON value that gets a member must be an object");
    return Access::contentToHandOut<Members>(*this)[key];
}

const json& json::operator[](std::size_t index) const
{
    require(is_array(), "a JSON value with elements must be an array");
    return Access::content<Elements>(*this).at(index);
}

json& json::operator[](std::size_t index)
{
    if (is_null()) {
        *this = array();
    }
    require(is_array(), "a JSON value that gets an element must be an array");
    if (index >= Elements().max_size()) {
        throw std::out_of_range("no JSON array can have so many elements");
    }
    auto& elements = Access::contentToHandOut<Elements>(*this);
    if (index >= elements.size()) {
        elements.resize(index + 1);
    }
    return elements[index];
}

json::operator std::string() const
{
    require(is_string(), "the JSON value is not a string");
    return Access::content<Text>(*this);
}

json::operator unsigned long long() const
{
    require(is_number_unsigned(), "the JSON value is not an unsigned number");
    return scalar.unsignedInteger;
}

json::operator unsigned long() const
{
    return atMost<unsigned long>(static_cast<unsigned long long>(*this));
}

json::operator unsigned int() const
{
    return atMost<unsigned int>(static_cast<unsigned long long>(*this));
}

const_iterator json::begin() const noexcept
{
    return const_iterator(is_array() ? Access::content<Elements>(*this).data() : nullptr);
}

const_iterator json::end() const noexcept
{
    if (!is_array()) {
        return const_iterator(nullptr);
    }
    const auto& elements = Access::content<Elements>(*this);
    return const_iterator(elements.data() + elements.size());
}

}  // namespace ZoNJson
