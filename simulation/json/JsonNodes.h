// How the values of a document are kept: each in 64 bits, which hold what it is and either the value itself or where
// its node is.
//
// A node belongs to the arena of its document, or stands alone. Within a document nobody counts references; from
// outside each value holds one, by which the whole document, or the lone node, stays.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace TrellanSimulation {

static_assert(std::endian::native == std::endian::little,
              "a short text stands behind the tag, which is in the low byte");

using JsonBits = std::uint64_t;

// What a value is, in its lowest four bits.
enum class JsonTag : unsigned {
    null,
    invalid,
    boolean,
    integer,
    unsignedInteger,
    real,
    wideInteger,  // the three kinds of numbers that need 64 bits: a node of one value
    wideUnsignedInteger,
    wideReal,
    shortText,
    text,
    array,     // the elements; without a node when there are none
    object,    // keys and values by turns, ordered by key unless it was built otherwise
    ownArray,  // for those who change values: neither nodes nor known here
    ownObject
};

inline constexpr unsigned jsonTagBits = 4;
inline constexpr std::size_t maxShortText = 7;

inline JsonTag tagOf(JsonBits bits)
{
    return static_cast<JsonTag>(bits & 0xF);
}

constexpr JsonBits bitsOf(JsonTag tag, JsonBits value = 0)
{
    return value << jsonTagBits | static_cast<JsonBits>(tag);
}

// In front of a node's content.
class JsonNode {
public:
    static constexpr std::size_t maxDistance = 0xFFFF;

    // `distance`: from the beginning of the arena's chunk in units of 16 bytes; 0 for a node that stands alone.
    JsonNode(std::size_t size, std::size_t distance) : head(size << 16 | distance) {}

    // Length of a text, number of elements, twice the number of members.
    std::size_t size() const { return head >> 16; }
    std::size_t distance() const { return head & maxDistance; }

    JsonBits* values() { return reinterpret_cast<JsonBits*>(this + 1); }
    char* text() { return reinterpret_cast<char*>(this + 1); }

private:
    std::uint64_t head;
};

// The value with this node, which is aligned to 16 bytes.
inline JsonBits bitsOf(JsonTag tag, const JsonNode* node)
{
    return reinterpret_cast<std::uintptr_t>(node) | static_cast<JsonBits>(tag);
}

// Whether the value has a node.
inline bool hasNode(JsonBits bits)
{
    const JsonTag tag = tagOf(bits);
    return (tag == JsonTag::text || tag == JsonTag::array || tag == JsonTag::object ||
            (tag >= JsonTag::wideInteger && tag <= JsonTag::wideReal)) &&
           bits >> jsonTagBits != 0;
}

inline JsonNode* nodeOf(JsonBits bits)
{
    return reinterpret_cast<JsonNode*>(bits & ~JsonBits{0xF});
}

// The elements of an array, or keys and values of an object.
struct JsonValues {
    const JsonBits* first = nullptr;
    std::size_t count = 0;
};

inline JsonValues valuesOf(JsonBits bits)
{
    return hasNode(bits) ? JsonValues{nodeOf(bits)->values(), nodeOf(bits)->size()} : JsonValues{};
}

// The value of a text of at most maxShortText bytes.
inline JsonBits shortTextBits(std::string_view text)
{
    std::array<char, sizeof(JsonBits)> bytes{};
    bytes[0] = static_cast<char>(text.size() << jsonTagBits | static_cast<unsigned>(JsonTag::shortText));
    std::memcpy(bytes.data() + 1, text.data(), text.size());
    return std::bit_cast<JsonBits>(bytes);
}

inline bool isText(JsonBits bits)
{
    return tagOf(bits) == JsonTag::shortText || tagOf(bits) == JsonTag::text;
}

// The text of a text, or of a key; good as long as `bits` stays in its place.
inline std::string_view textOf(const JsonBits& bits)
{
    if (tagOf(bits) == JsonTag::shortText) {
        return {reinterpret_cast<const char*>(&bits) + 1, (bits & 0xFF) >> jsonTagBits};
    }
    return {nodeOf(bits)->text(), nodeOf(bits)->size()};
}

// The value of the member `key` of an object; null when it has none. `ordered`: whether its members are ordered by key.
const JsonBits* findMember(JsonBits object, std::string_view key, bool ordered);

// Numbers of the three kinds: whatever way they are kept.
bool isInteger(JsonBits bits);
bool isUnsignedInteger(JsonBits bits);
bool isReal(JsonBits bits);
std::int64_t integerOf(JsonBits bits);
std::uint64_t unsignedIntegerOf(JsonBits bits);
double realOf(JsonBits bits);

}  // namespace TrellanSimulation
