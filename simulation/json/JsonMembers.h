// The members of an object that is being built.
#pragma once

#include <cstddef>

#include "simulation/json/JsonNodes.h"

namespace TrellanSimulation {

class JsonMembers {
public:
    // `count` keys and values, by turns.
    JsonMembers(JsonBits* first, std::size_t count) : first(reinterpret_cast<Member*>(first)), count(count) {}

    // Orders them by the bytes of their keys; of those with the same key the last one stays. Returns how many stay.
    std::size_t orderByKey() const;

    // Leaves them in their order; of those with the same key the last one's value stays, in the place of the first one.
    // Returns how many stay.
    std::size_t dropRepeated() const;

private:
    struct Member {
        JsonBits key;
        JsonBits value;
    };

    static bool isBefore(const Member& left, const Member& right);
    static bool isSame(const Member& left, const Member& right);
    bool isRepeatedAmongFew() const;

    Member* first;
    std::size_t count;
};

}  // namespace TrellanSimulation
