// The values: members, elements and conversions.
#include <algorithm>
#include <limits>

#include "simulation/libZoJsonLib/Access.h"

namespace ZoNJson {

using namespace TrellanSimulation;

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

// The member `key` of an object; null when it has none.
const json* find(const json& object, std::string_view key)
{
    if (Access::tag(object) == JsonTag::ownObject) {
        const Members& members = Access::own<Members>(object).content;
        const auto found = members.find(key);
        return found == members.end() ? nullptr : &found->second;
    }
    const JsonBits* member = findMember(Access::bits(object), key, true);
    return member == nullptr ? nullptr : &Access::part(*member);
}

const json& memberOf(const json& object, std::string_view key)
{
    require(object.is_object(), "a JSON value with members must be an object");
    const json* member = find(object, key);
    return member == nullptr ? nullValue() : *member;
}

// The elements of an array; none of any other value.
struct Range {
    const json* first = nullptr;
    std::size_t count = 0;
};

Range elementsOf(const json& value)
{
    switch (Access::tag(value)) {
        case JsonTag::ownArray: {
            const Elements& elements = Access::own<Elements>(value).content;
            return {elements.data(), elements.size()};
        }
        case JsonTag::array: {
            const JsonValues values = valuesOf(Access::bits(value));
            return values.count == 0 ? Range{} : Range{&Access::part(*values.first), values.count};
        }
        default:
            return {};
    }
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
    switch (tagOf(bits)) {
        case JsonTag::ownObject:
            return Access::own<Members>(*this).content.size();
        case JsonTag::object:
            return valuesOf(bits).count / 2;
        default:
            return elementsOf(*this).count;
    }
}

bool json::contains(const std::string& key) const
{
    return is_object() && find(*this, key) != nullptr;
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
    return Access::membersToHandOut(*this)[key];
}

const json& json::operator[](std::size_t index) const
{
    require(is_array(), "a JSON value with elements must be an array");
    const Range elements = elementsOf(*this);
    if (index >= elements.count) {
        throw std::out_of_range("the JSON array has no such element");
    }
    return elements.first[index];
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
    auto& elements = Access::elementsToHandOut(*this);
    if (index >= elements.size()) {
        elements.resize(index + 1);
    }
    return elements[index];
}

json::operator std::string() const
{
    require(is_string(), "the JSON value is not a string");
    return std::string(textOf(bits));
}

json::operator unsigned long long() const
{
    require(is_number_unsigned(), "the JSON value is not an unsigned number");
    return unsignedIntegerOf(bits);
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
    return const_iterator(elementsOf(*this).first);
}

const_iterator json::end() const noexcept
{
    const Range elements = elementsOf(*this);
    return const_iterator(elements.first + elements.count);
}

}  // namespace ZoNJson
