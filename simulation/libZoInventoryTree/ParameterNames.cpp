#include "simulation/libZoInventoryTree/ParameterNames.h"

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

const ParameterName* ParameterNames::find(std::string_view text)
{
    auto name = names.find(text);
    if (name == names.end()) {
        const auto address = parseParameterAddress(text);
        if (!address) {
            return nullptr;
        }
        name = names.try_emplace(std::string(text), text, *address).first;
    }
    return &name->second;
}

const ParameterName& ParameterNames::of(const ZoCInventoryAddress& address)
{
    return *find(parameterAddressText(address));
}

}  // namespace TrellanSimulation
