#include "simulation/libZoInventoryTree/ValueFaults.h"

#include "simulation/libZoInventoryTree/AddressText.h"
#include "simulation/libZoInventoryTree/ErrorEntries.h"

namespace TrellanSimulation {

namespace {

bool isValueKey(std::string_view key)
{
    const auto mark = key.find(':');
    return mark != std::string_view::npos && parseItemAddress(key.substr(0, mark)) &&
           parseParameterAddress(key.substr(mark + 1));
}

}  // namespace

ValueFaults::ValueFaults(const Json& source, const Place& place)
{
    requireObject(source, place);
    source.forEachMember([&](std::string_view key, const Json& errors) {
        const Place keyPlace(place, key);
        if (!isValueKey(key)) {
            throw DocumentFault(keyPlace, "not ITEM:PARAMETER");
        }
        ErrorEntries(errors, keyPlace);
    });
    document = JsonDocument(source);
    faults = MemberIndex(source);
}

bool ValueFaults::add(ZoCErrorListPool& pool, std::string_view key) const
{
    const auto found = faults.find(key);
    const ErrorEntries errors = found ? ErrorEntries(*found, Place()) : ErrorEntries();
    errors.addTo(pool);
    return !errors.empty();
}

}  // namespace TrellanSimulation
