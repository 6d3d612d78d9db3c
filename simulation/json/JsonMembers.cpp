#include "simulation/json/JsonMembers.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <utility>
#include <vector>

namespace TrellanSimulation {

namespace {

constexpr std::size_t fewMembers = 16;  // are put in order in their place, and compared each with each

// The first seven bytes of a key, NULs where it is shorter, as a number: keys whose numbers differ have their order.
std::uint64_t beginningOf(JsonBits key)
{
    if (tagOf(key) == JsonTag::shortText) {
        return __builtin_bswap64(key & ~JsonBits{0xFF});
    }
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, nodeOf(key)->text(), sizeof bytes);
    return __builtin_bswap64(bytes) >> 8;
}

static_assert(maxShortText == 7, "a text that is not short has eight bytes");

}  // namespace

bool JsonMembers::isBefore(const Member& left, const Member& right)
{
    const std::uint64_t leftBeginning = beginningOf(left.key);
    const std::uint64_t rightBeginning = beginningOf(right.key);
    return leftBeginning != rightBeginning ? leftBeginning < rightBeginning
                                           : left.key != right.key && textOf(left.key) < textOf(right.key);
}

// Keys that differ mostly differ in their lengths, too.
bool JsonMembers::isSame(const Member& left, const Member& right)
{
    return left.key == right.key ||
           (tagOf(left.key) == JsonTag::text && tagOf(right.key) == JsonTag::text &&
            nodeOf(left.key)->size() == nodeOf(right.key)->size() && textOf(left.key) == textOf(right.key));
}

std::size_t JsonMembers::orderByKey() const
{
    Member* const end = first + count;
    if (count > fewMembers) {
        std::stable_sort(first, end, isBefore);
    } else {
        for (Member* at = first; at < end; ++at) {
            for (Member* down = at; down != first && isBefore(*down, *(down - 1)); --down) {
                std::swap(*down, *(down - 1));
            }
        }
    }
    Member* kept = first;
    for (const Member* at = first; at < end; ++at) {
        if (at + 1 == end || !isSame(*at, *(at + 1))) {
            *kept++ = *at;
        }
    }
    return static_cast<std::size_t>(kept - first);
}

bool JsonMembers::isRepeatedAmongFew() const
{
    for (const Member* at = first; at < first + count; ++at) {
        for (const Member* earlier = first; earlier < at; ++earlier) {
            if (isSame(*earlier, *at)) {
                return true;
            }
        }
    }
    return false;
}

std::size_t JsonMembers::dropRepeated() const
{
    if (count <= fewMembers && !isRepeatedAmongFew()) {
        return count;
    }
    std::vector<std::size_t> byKey(count);
    std::iota(byKey.begin(), byKey.end(), 0);
    std::stable_sort(byKey.begin(), byKey.end(),
                     [this](std::size_t left, std::size_t right) { return isBefore(first[left], first[right]); });
    std::vector<bool> dropped(count);
    for (std::size_t at = 0; at < count;) {
        std::size_t next = at + 1;
        for (; next < count && isSame(first[byKey[at]], first[byKey[next]]); ++next) {
            first[byKey[at]].value = first[byKey[next]].value;
            dropped[byKey[next]] = true;
        }
        at = next;
    }
    std::size_t kept = 0;
    for (std::size_t at = 0; at < count; ++at) {
        if (!dropped[at]) {
            first[kept++] = first[at];
        }
    }
    return kept;
}

}  // namespace TrellanSimulation
