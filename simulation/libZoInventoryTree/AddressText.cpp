// A walk over the elements of a written address: the name of a kind, and an index in brackets.
#include "simulation/libZoInventoryTree/AddressText.h"

#include <charconv>

#include "simulation/libZoInventoryTree/Kinds.h"

namespace TrellanSimulation {

namespace {

std::optional<unsigned> parseIndex(std::string_view digits)
{
    unsigned index = 0;
    const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), index);
    if (fault != std::errc() || end != digits.data() + digits.size() || (digits.size() > 1 && digits.front() == '0')) {
        return std::nullopt;
    }
    return index;
}

}  // namespace

std::optional<ZoCInventoryAddress> parseElement(std::string_view text)
{
    const auto bracket = text.find('[');
    const auto category = categoryOf(text.substr(0, bracket));
    if (category == ZoCInventoryAddress::noCategory) {
        return std::nullopt;
    }
    if (bracket == std::string_view::npos) {
        return ZoCInventoryAddress(category);
    }
    if (text.back() != ']') {
        return std::nullopt;
    }
    const auto index = parseIndex(text.substr(bracket + 1, text.size() - bracket - 2));
    return index ? std::optional(ZoCInventoryAddress(category, *index)) : std::nullopt;
}

std::optional<ZoCInventoryAddress> parseParameterAddress(std::string_view text)
{
    const std::string_view whole = text;
    ZoCInventoryAddress address;
    for (auto slash = text.find('/');; slash = text.find('/')) {
        const auto element = parseElement(text.substr(0, slash));
        if (!element) {
            return std::nullopt;
        }
        address = address / *element;
        if (slash == std::string_view::npos) {
            break;
        }
        text.remove_prefix(slash + 1);
    }
    return parameterAddressText(address) == whole ? std::optional(address) : std::nullopt;
}

std::optional<ZoCInventoryAddress> parseItemAddress(std::string_view text)
{
    return text.starts_with('/') ? parseParameterAddress(text.substr(1)) : std::nullopt;
}

std::string itemAddressText(const ZoCInventoryAddress& address)
{
    return address.toString().c_str();
}

std::string parameterAddressText(const ZoCInventoryAddress& address)
{
    const ZoCString text = address.toString();
    return text.isEmpty() ? "" : text.c_str() + 1;
}

}  // namespace TrellanSimulation
