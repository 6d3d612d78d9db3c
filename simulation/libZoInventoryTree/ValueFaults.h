// ValueFaults: errors that reading a value of a tree adds. The value then reads as the default.
#pragma once

#include <string_view>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/MemberIndex.h"

namespace TrellanSimulation {

class ValueFaults {
public:
    // Those of the object `source`, which stands at `place`: arrays of errors by "ITEM:PARAMETER"
    // ("/ROOT/HCN:PRODUCT/NAME"). Throws DocumentFault with the place of the first thing that is wrong.
    ValueFaults(const Json& source, const Place& place);

    bool empty() const { return faults.empty(); }

    // Adds the errors of the value `key` to `pool`; false when there are none.
    bool add(ZoCErrorListPool& pool, std::string_view key) const;

private:
    JsonDocument document;
    MemberIndex faults;
};

}  // namespace TrellanSimulation
