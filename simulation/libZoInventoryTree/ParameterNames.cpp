#include "simulation/libZoInventoryTree/ParameterNames.h"

#include <algorithm>

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

// What is beyond these is looked for by its text in each item.
constexpr std::size_t maxNames = 1024;
constexpr std::size_t maxKeys = 4;

// One of 128 places, which addresses of one or two elements share with others of their kind alone.
std::size_t placeOf(const ZoCInventoryAddress& address)
{
    return (address.getCategory() + 64 * address.getLength()) % 128;
}

}  // namespace

bool ParameterNames::add(const JsonBits& key)
{
    const std::size_t place = key * 0x9E3779B97F4A7C15 >> 56;
    JsonBits& known = lateKeys[place];
    JsonBits& other = lateKeys[place ^ 1];
    if (known == key || other == key) {
        return true;
    }
    if (!parse(key)) {
        return false;
    }
    (known == 0 || other != 0 ? known : other) = key;
    return true;
}

bool ParameterNames::parse(const JsonBits& key)
{
    const std::string_view text = textOf(key);
    if (const auto found = names.find(text); found != names.end()) {
        noteKey(found->second, key);
        return true;
    }
    const auto address = parseParameterAddress(text);
    if (!address) {
        return false;
    }
    if (names.size() < maxNames) {
        noteKey(addName(text, *address), key);
    } else {
        all = false;
    }
    return true;
}

void ParameterNames::noteKey(ParameterName& name, const JsonBits& key)
{
    if (std::find(name.keys.begin(), name.keys.end(), key) != name.keys.end()) {
        return;
    }
    if (name.keys.size() < maxKeys) {
        name.keys.push_back(key);
    } else {
        name.hasAllKeys = false;
    }
}

const ParameterName* ParameterNames::find(const ZoCInventoryAddress& address) const
{
    const ParameterName*& known = lateNames[placeOf(address)];
    if (known == nullptr || known->address == address) {
        return known;
    }
    const auto found = names.find(parameterAddressText(address));
    return found == names.end() ? nullptr : known = &found->second;
}

const ParameterName& ParameterNames::of(const ZoCInventoryAddress& address)
{
    const ParameterName* name = find(address);
    return name != nullptr ? *name : addName(parameterAddressText(address), address);
}

// Behind the document's last name, the new one may be among those that were not noted.
ParameterName& ParameterNames::addName(std::string_view text, const ZoCInventoryAddress& address)
{
    ParameterName& name = names[std::string(text)];
    name.address = address;
    name.hasAllKeys = all;
    lateNames[placeOf(address)] = &name;
    return name;
}

}  // namespace TrellanSimulation
