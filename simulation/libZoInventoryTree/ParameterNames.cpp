#include "simulation/libZoInventoryTree/ParameterNames.h"

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

// Of the length and some characters.
std::size_t hashOf(std::string_view text)
{
    return text.empty() ? 0
                        : text.size() * 5 + std::size_t{static_cast<unsigned char>(text.back())} * 3 +
                              static_cast<unsigned char>(text[text.size() / 2]);
}

}  // namespace

const ParameterName* ParameterNames::find(std::string_view text)
{
    const ParameterName*& known = lately[hashOf(text) % lately.size()];
    if (known != nullptr && known->text == text) {
        return known;
    }
    auto name = names.find(text);
    if (name == names.end()) {
        const auto address = parseParameterAddress(text);
        if (!address) {
            return nullptr;
        }
        name = names.try_emplace(std::string(text), text, *address).first;
    }
    return known = &name->second;
}

const ParameterName& ParameterNames::of(const ZoCInventoryAddress& address)
{
    return *find(parameterAddressText(address));
}

}  // namespace TrellanSimulation
