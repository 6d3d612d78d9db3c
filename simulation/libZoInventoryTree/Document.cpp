// Values that know their place in the document, so that whoever finds one wrong can say where.
#include "simulation/libZoInventoryTree/Document.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "json/Shortened.h"
#include "simulation/json/JsonBuilder.h"

namespace TrellanSimulation {

namespace {

// Objects and arrays within each other. The deepest tree there may be has two for each level of items, and some around
// them and in them.
constexpr std::size_t maxDepth = 1030;

constexpr std::size_t blockSize = 65536;
constexpr std::size_t room = 64;  // behind the text, for who reads it

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
        text += TrellanJson::shortened((*place)->member, TrellanJson::longestName);
    }
    return text;
}

DocumentFault::DocumentFault(const Place& place, std::string_view reason) : std::runtime_error(faultText(place, reason))
{
}

bool Json::isNumber() const
{
    return isInteger(*bits) || isUnsignedInteger(*bits) || isReal(*bits);
}

std::optional<std::uint64_t> Json::unsignedNumber() const
{
    return isUnsignedInteger(*bits) ? std::optional(unsignedIntegerOf(*bits)) : std::nullopt;
}

std::optional<int> Json::signedNumber() const
{
    if (const auto number = unsignedNumber()) {
        return std::in_range<int>(*number) ? std::optional(static_cast<int>(*number)) : std::nullopt;
    }
    return isInteger(*bits) && std::in_range<int>(integerOf(*bits)) ? std::optional(static_cast<int>(integerOf(*bits)))
                                                                    : std::nullopt;
}

std::optional<Json> Json::find(std::string_view name) const
{
    const JsonBits* member = findMember(*bits, name, false);
    return member == nullptr ? std::nullopt : std::optional(Json(*member));
}

JsonBits Json::share() const
{
    keepValue(*bits);
    return *bits;
}

JsonDocument::JsonDocument(JsonDocument&& other) noexcept : bits(std::exchange(other.bits, 0)) {}

JsonDocument& JsonDocument::operator=(JsonDocument&& other) noexcept
{
    std::swap(bits, other.bits);
    return *this;
}

void JsonDocument::releaseRoot()
{
    releaseValue(bits);
}

JsonDocument JsonDocument::parse(std::string& text)
{
    JsonBuilder builder(MemberOrder::written);
    JsonVerdict verdict = readJson(text, builder, maxDepth);
    const auto nul = verdict == JsonVerdict::invalid ? text.find('\0') : std::string::npos;
    if (nul != std::string::npos) {
        text.resize(nul);
        verdict = readJson(text, builder, maxDepth);
    }
    if (verdict == JsonVerdict::tooDeep) {
        throw DocumentFault("nested more than " + std::to_string(maxDepth) + " levels deep");
    }
    if (nul != std::string::npos) {
        throw DocumentFault("it holds a NUL byte");
    }
    if (verdict == JsonVerdict::invalid) {
        throw DocumentFault(reasonWhyNoJson(text));
    }
    JsonDocument document;
    document.bits = builder.take();
    return document;
}

std::string readText(RegularFile& file)
{
    std::string text;
    text.reserve(file.size() + room);
    std::vector<char> block(blockSize);
    while (const std::size_t length = file.read(block.data(), block.size())) {
        text.append(block.data(), length);
        if (std::string_view(block.data(), length).find('\0') != std::string_view::npos) {
            break;
        }
    }
    return text;
}

void requireObject(const Json& value, const Place& place)
{
    if (!value.isObject()) {
        throw DocumentFault(place, "not an object");
    }
}

void requireArray(const Json& value, const Place& place)
{
    if (!value.isArray()) {
        throw DocumentFault(place, "not an array");
    }
}

void requireMembers(const Json& value, std::initializer_list<std::string_view> known, const Place& place)
{
    requireObject(value, place);
    value.forEachMember([&](std::string_view name, const Json&) {
        if (std::find(known.begin(), known.end(), name) == known.end()) {
            throw DocumentFault(Place(place, name), "unknown member");
        }
    });
}

Json getMember(const Json& object, std::string_view name, const Place& place)
{
    const auto member = object.find(name);
    if (!member) {
        throw DocumentFault(Place(place, name), "missing");
    }
    return *member;
}

std::string_view getText(const Json& value, const Place& place)
{
    const auto text = value.text();
    if (!text) {
        throw DocumentFault(place, "not a string");
    }
    return *text;
}

std::uint64_t getNumber(const Json& value, const Place& place, std::uint64_t lowest, std::uint64_t highest)
{
    const auto number = value.unsignedNumber();
    if (!number || *number < lowest || *number > highest) {
        throwNoWholeNumber(place, lowest, highest);
    }
    return *number;
}

int getInt(const Json& value, const Place& place)
{
    const auto number = value.signedNumber();
    if (!number) {
        throwNoWholeNumber(place, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    }
    return *number;
}

}  // namespace TrellanSimulation
