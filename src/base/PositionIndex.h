// PositionIndex: finds records, which are kept elsewhere one behind the other, by what they are.
//
// It keeps a record's position beside its hash, eight bytes for both, so that a search looks at few records and stays
// within little memory however many there are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace ZoNUpdateBase {

// What `hash` and `value` together hash to. Each bit of both tells in the lower half of the result.
inline std::uint64_t combinedHash(std::uint64_t hash, std::uint64_t value)
{
    hash = (hash ^ value) * 0x9E3779B97F4A7C15U;
    return hash ^ hash >> 32;
}

class PositionIndex {
public:
    // The position that was added with this hash and for which `isSought` is true.
    template <class IsSought>
    std::optional<std::uint32_t> find(std::uint64_t hash, IsSought isSought) const
    {
        const auto sought = static_cast<std::uint32_t>(hash);
        for (std::size_t at = sought & mask(); places[at].next != 0; at = (at + 1) & mask()) {
            if (places[at].hash == sought && isSought(places[at].next - 1)) {
                return places[at].next - 1;
            }
        }
        return std::nullopt;
    }

    // Has the processor fetch, without waiting for it, what a search for this hash looks at first.
    void fetchAhead(std::uint64_t hash) const { __builtin_prefetch(&places[hash & mask()]); }

    // Makes room for so many records at once.
    void reserve(std::size_t records)
    {
        while (records > places.size() / 5 * 4) {
            grow();
        }
    }

    // A record that cannot be found yet.
    void add(std::uint64_t hash, std::uint32_t position)
    {
        reserve(++count);
        insert({static_cast<std::uint32_t>(hash), position + 1});
    }

private:
    struct Place {
        std::uint32_t hash;
        std::uint32_t next;  // the position behind the record's; 0: the place is free
    };

    std::size_t mask() const { return places.size() - 1; }

    void insert(const Place& place)
    {
        std::size_t at = place.hash & mask();
        while (places[at].next != 0) {
            at = (at + 1) & mask();
        }
        places[at] = place;
    }

    void grow()
    {
        for (const Place& place : std::exchange(places, std::vector<Place>(2 * places.size()))) {
            if (place.next != 0) {
                insert(place);
            }
        }
    }

    std::vector<Place> places = std::vector<Place>(16);  // a power of two of them; never all taken
    std::size_t count = 0;
};

}  // namespace ZoNUpdateBase
