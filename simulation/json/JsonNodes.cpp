#include "simulation/json/JsonNodes.h"

#include <algorithm>

namespace TrellanSimulation {

namespace {

constexpr std::size_t membersToWalk = 16;  // which are looked through faster than halved

bool isKind(JsonBits bits, JsonTag narrow, JsonTag wide)
{
    return tagOf(bits) == narrow || tagOf(bits) == wide;
}

// The bits of a wide number; else the narrow one's value, with its sign.
std::int64_t numberOf(JsonBits bits, JsonTag wide)
{
    return tagOf(bits) == wide ? static_cast<std::int64_t>(*nodeOf(bits)->values())
                               : static_cast<std::int64_t>(bits) >> jsonTagBits;
}

const JsonBits* findAmongFew(JsonValues members, std::string_view key)
{
    const JsonBits* const end = members.first + members.count;
    if (key.size() <= maxShortText) {
        const JsonBits wanted = shortTextBits(key);
        for (const JsonBits* at = members.first; at != end; at += 2) {
            if (*at == wanted) {
                return at + 1;
            }
        }
        return nullptr;
    }
    for (const JsonBits* at = members.first; at != end; at += 2) {
        if (tagOf(*at) == JsonTag::text && textOf(*at) == key) {
            return at + 1;
        }
    }
    return nullptr;
}

}  // namespace

const JsonBits* findMember(JsonBits object, std::string_view key, bool ordered)
{
    const JsonValues members = valuesOf(object);
    if (!ordered || members.count <= 2 * membersToWalk) {
        return findAmongFew(members, key);
    }
    std::size_t from = 0;
    std::size_t to = members.count / 2;
    while (from < to) {
        const std::size_t middle = (from + to) / 2;
        const int order = textOf(members.first[2 * middle]).compare(key);
        if (order == 0) {
            return members.first + 2 * middle + 1;
        }
        order < 0 ? from = middle + 1 : to = middle;
    }
    return nullptr;
}

bool isInteger(JsonBits bits)
{
    return isKind(bits, JsonTag::integer, JsonTag::wideInteger);
}

bool isUnsignedInteger(JsonBits bits)
{
    return isKind(bits, JsonTag::unsignedInteger, JsonTag::wideUnsignedInteger);
}

bool isReal(JsonBits bits)
{
    return isKind(bits, JsonTag::real, JsonTag::wideReal);
}

std::int64_t integerOf(JsonBits bits)
{
    return numberOf(bits, JsonTag::wideInteger);
}

std::uint64_t unsignedIntegerOf(JsonBits bits)
{
    return tagOf(bits) == JsonTag::wideUnsignedInteger ? *nodeOf(bits)->values() : bits >> jsonTagBits;
}

// Of a narrow one the last four bits are 0.
double realOf(JsonBits bits)
{
    return std::bit_cast<double>(tagOf(bits) == JsonTag::wideReal ? *nodeOf(bits)->values() : bits & ~JsonBits{0xF});
}

}  // namespace TrellanSimulation
