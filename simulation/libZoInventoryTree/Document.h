// Checked reading of JSON documents: what is wrong in a document is reported by its place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

namespace TrellanSimulation {

// Members keep their order.
using Json = nlohmann::ordered_json;

// A value's place in a document: a chain of members and positions that ends at the document itself. A place refers to
// the one above it and to its member's name, which must both outlive it; its text is only made when it is asked for.
class Place {
public:
    // The document.
    Place() = default;

    Place(const Place& above, std::string_view member) : above(&above), member(member) {}
    Place(const Place& above, std::size_t position) : above(&above), position(position) {}

    // As in "tree.items[0].parameters.ID"; empty for the document.
    std::string text() const;

private:
    static constexpr std::size_t noPosition = std::numeric_limits<std::size_t>::max();

    const Place* above = nullptr;
    std::string_view member;
    std::size_t position = noPosition;
};

// A document is not as it must be. what() is the place and the reason: "tree.id: missing".
class DocumentFault : public std::runtime_error {
public:
    DocumentFault(const Place& place, std::string_view reason);
    explicit DocumentFault(const std::string& reason) : std::runtime_error(reason) {}
};

// The JSON document in the regular file at `path`. Throws DocumentFault when it cannot be read or is not valid JSON.
Json readDocument(const std::filesystem::path& path);

// Throws DocumentFault when `value` is not an object, or has a member that is not one of `known`.
void requireMembers(const Json& value, std::initializer_list<std::string_view> known, const Place& place);

// Throws DocumentFault when `value` is not an object, or not an array.
void requireObject(const Json& value, const Place& place);
void requireArray(const Json& value, const Place& place);

// The member `name` of `object`; null, or a DocumentFault, when there is none.
const Json* findMember(const Json& object, std::string_view name);
const Json& getMember(const Json& object, std::string_view name, const Place& place);

// The value as text, or as a whole number from `lowest` to `highest`. Throws DocumentFault when it is anything else.
const std::string& getText(const Json& value, const Place& place);
std::uint64_t getNumber(const Json& value, const Place& place, std::uint64_t lowest = 0,
                        std::uint64_t highest = std::numeric_limits<std::uint32_t>::max());

// The value as a whole number of any sign that an int holds. Throws DocumentFault when it is anything else.
int getInt(const Json& value, const Place& place);

}  // namespace TrellanSimulation
