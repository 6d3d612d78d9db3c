// Checked reading of JSON documents: what is wrong in a document is reported by its place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <initializer_list>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "simulation/base/RegularFile.h"
#include "simulation/json/JsonNodes.h"

namespace TrellanSimulation {

// A value of a document, good as long as the document is.
class Json {
public:
    explicit Json(const JsonBits& bits) : bits(&bits) {}

    bool isObject() const { return tagOf(*bits) == JsonTag::object; }
    bool isArray() const { return tagOf(*bits) == JsonTag::array; }
    bool isText() const { return TrellanSimulation::isText(*bits); }
    bool isNumber() const;

    // The value of a text, and of a number that a type holds; nothing of any other value.
    std::optional<std::string_view> text() const { return isText() ? std::optional(textOf(*bits)) : std::nullopt; }
    std::optional<std::uint64_t> unsignedNumber() const;  // written without sign, fraction and exponent
    std::optional<int> signedNumber() const;              // of any sign

    // Number of elements of an array, or members of an object, and an element.
    std::size_t size() const { return valuesOf(*bits).count / (isObject() ? 2 : 1); }
    Json operator[](std::size_t position) const { return Json(valuesOf(*bits).first[position]); }

    // Calls `visit` with the name and the value of each member of an object, in the order in which they are written;
    // the name is good as long as the document is.
    template <class Visit>
    void forEachMember(Visit visit) const
    {
        forEachKey([&](const JsonBits& key, const Json& value) { visit(textOf(key), value); });
    }

    // The same with names as the document keeps them: the same few again and again, whatever its size.
    template <class Visit>
    void forEachKey(Visit visit) const
    {
        const JsonValues members = values();
        for (std::size_t at = 0; at < members.count; at += 2) {
            visit(members.first[at], Json(members.first[at + 1]));
        }
    }

    // The member `name` of an object; nothing when there is none.
    std::optional<Json> find(std::string_view name) const;

    // The elements of an array, or names and values of an object by turns.
    JsonValues values() const { return valuesOf(*bits); }

    // The value itself, which the caller refers to from now on (releaseValue).
    JsonBits share() const;

    // Where the value stands in its document, which tells its values apart.
    const JsonBits* identity() const { return bits; }

private:
    const JsonBits* bits;
};

// A JSON document. Of members with the same name the last one counts, in the place of the first one.
class JsonDocument {
public:
    JsonDocument() = default;

    // Of this value, with which the document that it is a part of stays.
    explicit JsonDocument(const Json& part) : bits(part.share()) {}

    ~JsonDocument() { releaseRoot(); }
    JsonDocument(JsonDocument&& other) noexcept;
    JsonDocument& operator=(JsonDocument&& other) noexcept;

    // The whole; good as long as this is neither moved nor assigned to.
    Json root() const { return Json(bits); }

    // Parses `text`; may reserve memory behind it. Throws DocumentFault when it is not valid JSON, or nested deeper
    // than any tree, from where on it is not read.
    static JsonDocument parse(std::string& text);

private:
    void releaseRoot();

    JsonBits bits = 0;
};

// A value's place in a document: a chain of members and positions that ends at the document itself. A place refers to
// the one above it and to its member's name, which must both outlive it; its text is only made when it is asked for.
class Place {
public:
    // The document.
    Place() = default;

    Place(const Place& above, std::string_view member) : above(&above), member(member) {}
    Place(const Place& above, std::size_t position) : above(&above), position(position) {}

    // As in "tree.items[0].parameters.ID", of long names the beginning; empty for the document.
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

// The bytes of `file` from where it is read next. Throws FileFault when it cannot be read, DocumentFault when it holds
// a NUL byte.
std::string readText(RegularFile& file);

// Throws DocumentFault when `value` is not an object, or has a member that is not one of `known`.
void requireMembers(const Json& value, std::initializer_list<std::string_view> known, const Place& place);

// Throws DocumentFault when `value` is not an object, or not an array.
void requireObject(const Json& value, const Place& place);
void requireArray(const Json& value, const Place& place);

// The member `name` of `object`; a DocumentFault when there is none.
Json getMember(const Json& object, std::string_view name, const Place& place);

// The value as text, or as a whole number from `lowest` to `highest`. Throws DocumentFault when it is anything else.
std::string_view getText(const Json& value, const Place& place);
std::uint64_t getNumber(const Json& value, const Place& place, std::uint64_t lowest = 0,
                        std::uint64_t highest = std::numeric_limits<std::uint32_t>::max());

// Sets `number` to the member `name` of `object`, which stands at `place`; leaves it as it is when there is none.
// Throws DocumentFault when that is no whole number which `number` holds.
template <class Number>
void readNumber(const Json& object, std::string_view name, const Place& place, Number& number)
{
    if (const auto member = object.find(name)) {
        number = static_cast<Number>(getNumber(*member, Place(place, name), 0, std::numeric_limits<Number>::max()));
    }
}

// The value as a whole number of any sign that an int holds. Throws DocumentFault when it is anything else.
int getInt(const Json& value, const Place& place);

}  // namespace TrellanSimulation
