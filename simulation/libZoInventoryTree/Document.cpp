// Values that know their place in the document, so that whoever finds one wrong can say where.
#include "simulation/libZoInventoryTree/Document.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "simulation/libZoInventoryTree/DocumentBuilder.h"

namespace TrellanSimulation {

namespace {

// Names and values of the document may hold a NUL, at which a fault's text would end.
std::string faultText(const Place& place, std::string_view reason)
{
    std::string text = place.text();
    if (!text.empty()) {
        text += ": ";
    }
    text.append(reason);
    for (auto at = text.find('\0'); at != std::string::npos; at = text.find('\0', at)) {
        text.replace(at, 1, "\\u0000");
    }
    return text;
}

template <class Number>
[[noreturn]] void throwNoWholeNumber(const Place& place, Number lowest, Number highest)
{
    throw DocumentFault(place, "not a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
}

}  // namespace

std::string Place::text() const
{
    std::vector<const Place*> path;
    for (const Place* place = this; place->above != nullptr; place = place->above) {
        path.push_back(place);
    }
    std::string text;
    for (auto place = path.rbegin(); place != path.rend(); ++place) {
        if ((*place)->position != noPosition) {
            text += '[' + std::to_string((*place)->position) + ']';
            continue;
        }
        if (!text.empty()) {
            text += '.';
        }
        text += (*place)->member;
    }
    return text;
}

DocumentFault::DocumentFault(const Place& place, std::string_view reason) : std::runtime_error(faultText(place, reason))
{
}

Json readDocument(const std::filesystem::path& path)
{
    try {
        RegularFile file(path);
        return parseDocument(file);
    } catch (const FileFault& fault) {
        throw DocumentFault(fault.what());
    }
}

void requireObject(const Json& value, const Place& place)
{
    if (!value.is_object()) {
        throw DocumentFault(place, "not an object");
    }
}

void requireArray(const Json& value, const Place& place)
{
    if (!value.is_array()) {
        throw DocumentFault(place, "not an array");
    }
}

void requireMembers(const Json& value, std::initializer_list<std::string_view> known, const Place& place)
{
    requireObject(value, place);
    for (const auto& [name, member] : value.items()) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw DocumentFault(Place(place, name), "unknown member");
        }
    }
}

const Json* findMember(const Json& object, std::string_view name)
{
    const auto found = object.find(name);
    return found == object.end() ? nullptr : &*found;
}

const Json& getMember(const Json& object, std::string_view name, const Place& place)
{
    const Json* member = findMember(object, name);
    if (member == nullptr) {
        throw DocumentFault(Place(place, name), "missing");
    }
    return *member;
}

const std::string& getText(const Json& value, const Place& place)
{
    if (!value.is_string()) {
        throw DocumentFault(place, "not a string");
    }
    return value.get_ref<const std::string&>();
}

std::uint64_t getNumber(const Json& value, const Place& place, std::uint64_t lowest, std::uint64_t highest)
{
    if (value.is_number_unsigned() && value.get<std::uint64_t>() >= lowest && value.get<std::uint64_t>() <= highest) {
        return value.get<std::uint64_t>();
    }
    throwNoWholeNumber(place, lowest, highest);
}

int getInt(const Json& value, const Place& place)
{
    const bool fits = value.is_number_unsigned()
                          ? std::in_range<int>(value.get<std::uint64_t>())
                          : value.is_number_integer() && std::in_range<int>(value.get<std::int64_t>());
    if (!fits) {
        throwNoWholeNumber(place, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    }
    return value.get<int>();
}

}  // namespace TrellanSimulation
