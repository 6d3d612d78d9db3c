// A part is known by what it is in and its token, both as numbers: a position is its own number.
#include "tool/documents/WantedParts.h"

#include <algorithm>
#include <charconv>

namespace TrellanTool {

namespace {

constexpr std::uint32_t firstName = std::uint32_t{1} << 31;
constexpr std::size_t fewParts = 16;  // are looked through

// The number of a token that is written as positions are.
std::optional<std::uint32_t> positionOf(std::string_view token)
{
    std::uint32_t number = 0;
    const char* const end = token.data() + token.size();
    const auto [stop, error] = std::from_chars(token.data(), end, number);
    const bool isPlain = error == std::errc() && stop == end && (token.front() != '0' || token.size() == 1);
    return isPlain && number < firstName ? std::optional(number) : std::nullopt;
}

}  // namespace

std::uint32_t WantedParts::numberOf(std::string_view token)
{
    if (const auto position = positionOf(token)) {
        return *position;
    }
    if (const auto found = names.find(token); found != names.end()) {
        return found->second;
    }
    const auto number = firstName + static_cast<std::uint32_t>(names.size());
    names.emplace(token, number);
    return number;
}

void WantedParts::add(std::string_view pointer)
{
    Part part = whole;
    while (!pointer.empty()) {
        const std::size_t end = std::min(pointer.find('/', 1), pointer.size());
        part = partBelow(part, numberOf(pointer.substr(1, end - 1)));
        pointer.remove_prefix(end);
    }
    asked.push_back(part);
}

WantedParts::Part WantedParts::partBelow(Part parent, std::uint32_t token)
{
    if (const auto found = findNumber(parent, token)) {
        return *found;
    }
    const auto added = static_cast<Part>(parts.size());
    parts.push_back({parent, token, nowhere});
    if (parts.size() > std::max(fewParts, slots.size() / 5 * 4)) {
        makeSlots();
    } else if (!slots.empty()) {
        slots[slotOf(parent, token)] = added;
    }
    return added;
}

void WantedParts::makeSlots()
{
    const std::size_t size = std::max(4 * fewParts, 2 * slots.size());
    slots = {};
    slots.resize(size);
    for (Part part = 1; part < parts.size(); ++part) {
        slots[slotOf(parts[part].parent, parts[part].token)] = part;
    }
}

// The one of the part, or that where it belongs.
std::size_t WantedParts::slotOf(Part parent, std::uint32_t token) const
{
    const std::uint64_t hash = (std::uint64_t{parent} << 32 | token) * 0x9E3779B97F4A7C15U;
    std::size_t slot = (hash ^ hash >> 32) & (slots.size() - 1);
    while (slots[slot] != whole && (parts[slots[slot]].parent != parent || parts[slots[slot]].token != token)) {
        slot = (slot + 1) & (slots.size() - 1);
    }
    return slot;
}

std::optional<WantedParts::Part> WantedParts::findNumber(Part parent, std::uint32_t token) const
{
    if (!slots.empty()) {
        const Part found = slots[slotOf(parent, token)];
        return found != whole ? std::optional(found) : std::nullopt;
    }
    for (Part part = 1; part < parts.size(); ++part) {
        if (parts[part].parent == parent && parts[part].token == token) {
            return part;
        }
    }
    return std::nullopt;
}

std::optional<WantedParts::Part> WantedParts::find(Part parent, std::string_view token) const
{
    if (parts.size() == 1) {
        return std::nullopt;
    }
    if (const auto position = positionOf(token)) {
        return findNumber(parent, *position);
    }
    const auto name = names.find(token);
    return name != names.end() ? findNumber(parent, name->second) : std::nullopt;
}

std::optional<WantedParts::Part> WantedParts::find(Part parent, std::size_t position) const
{
    return position < firstName ? findNumber(parent, static_cast<std::uint32_t>(position)) : std::nullopt;
}

std::optional<std::size_t> WantedParts::offset(std::size_t pointer) const
{
    const Known& part = parts[asked[pointer]];
    const std::size_t offset = part.offset != nowhere ? part.offset : parts[part.parent].offset;
    return offset != nowhere ? std::optional(offset) : std::nullopt;
}

void WantedParts::clear()
{
    if (parts.size() > fewParts) {
        *this = {};
        return;
    }
    parts.resize(1);
    parts.front() = {};
    asked.clear();
    names.clear();
}

}  // namespace TrellanTool
