// The members of an object that has many, by their names.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "simulation/libZoInventoryTree/Document.h"

namespace TrellanSimulation {

class MemberIndex {
public:
    // Of no object.
    MemberIndex() = default;

    // Of `object`, good as long as its document is.
    explicit MemberIndex(const Json& object);

    bool empty() const { return names.empty(); }

    // The member `name`; nothing when there is none.
    std::optional<Json> find(std::string_view name) const;

private:
    std::vector<const JsonBits*> names;  // ordered; behind each stands its value
};

}  // namespace TrellanSimulation
