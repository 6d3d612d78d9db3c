#include "simulation/libZoInventoryTree/ParameterNames.h"

#include <algorithm>

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

// A number of an address that few others have.
std::uint64_t numberOf(const ZoCInventoryAddress& address)
{
    return std::uint64_t{address.getIndex()} << 32 | std::uint64_t{address.getCategory()} << 8 | address.getLength();
}

// One of 128 places, which addresses of one or two elements share with others of their kind alone.
std::size_t placeOf(const ZoCInventoryAddress& address)
{
    return (address.getCategory() + 64 * address.getLength()) % 128;
}

}  // namespace

const ParameterName* ParameterNames::ofKey(const JsonBits& key)
{
    KnownKey& known = lateKeys[(key >> jsonTagBits ^ key >> 12) % lateKeys.size()];
    if (known.key != key || known.name == nullptr) {
        known = {key, parseKey(key)};
    }
    return known.name;
}

const ParameterName* ParameterNames::parseKey(const JsonBits& key)
{
    const std::string_view text = textOf(key);
    const auto found = names.find(text);
    const auto address = found == names.end() ? parseParameterAddress(text) : std::nullopt;
    if (found == names.end() && !address) {
        return nullptr;
    }
    ParameterName& name = found == names.end() ? add(text, *address) : found->second;
    if (std::find(name.keys.begin(), name.keys.end(), key) == name.keys.end()) {
        name.keys.push_back(key);
    }
    return &name;
}

const ParameterName* ParameterNames::find(const ZoCInventoryAddress& address) const
{
    const ParameterName*& known = lateNames[placeOf(address)];
    if (known == nullptr || known->address == address) {
        return known;
    }
    const auto [first, end] = byNumber.equal_range(numberOf(address));
    const auto found = std::find_if(first, end, [&](const auto& entry) { return entry.second->address == address; });
    return found == end ? nullptr : known = found->second;
}

const ParameterName& ParameterNames::of(const ZoCInventoryAddress& address)
{
    const ParameterName* name = find(address);
    return name != nullptr ? *name : add(parameterAddressText(address), address);
}

ParameterName& ParameterNames::add(std::string_view text, const ZoCInventoryAddress& address)
{
    ParameterName& name = names[std::string(text)];
    name.address = address;
    byNumber.emplace(numberOf(address), &name);
    lateNames[placeOf(address)] = &name;
    return name;
}

}  // namespace TrellanSimulation
