#include "tool/documents/DuplicateKeys.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "tool/documents/JsonWalk.h"

namespace TrellanTool {

namespace {

constexpr unsigned offsetBits = 40;

std::uint64_t hashOf(std::uint64_t key)
{
    return key >> offsetBits;
}

std::size_t offsetOf(std::uint64_t key)
{
    return key & ((std::uint64_t{1} << offsetBits) - 1);
}

}  // namespace

void DuplicateKeys::add(std::size_t offset, std::string_view name)
{
    keys.push_back(std::hash<std::string_view>()(name) << offsetBits | offset);
}

std::vector<std::size_t> DuplicateKeys::take(std::size_t object)
{
    std::vector<std::size_t> repeated;
    std::sort(keys.begin() + static_cast<std::ptrdiff_t>(object), keys.end());
    const std::uint64_t* const end = keys.data() + keys.size();
    for (const std::uint64_t* first = keys.data() + object; first != end;) {
        const std::uint64_t* next = first + 1;
        while (next != end && hashOf(*next) == hashOf(*first)) {
            ++next;
        }
        if (next - first > 1) {
            addRepeated(repeated, first, next);
        }
        first = next;
    }
    keys.resize(object);
    return repeated;
}

// Of keys with the same hash, in the order of the text. Nearly always they are all the same.
void DuplicateKeys::addRepeated(std::vector<std::size_t>& repeated, const std::uint64_t* first,
                                const std::uint64_t* end) const
{
    const std::string name = stringAt(text, offsetOf(*first));
    if (std::all_of(first + 1, end, [&](std::uint64_t key) { return stringAt(text, offsetOf(key)) == name; })) {
        std::transform(first + 1, end, std::back_inserter(repeated), offsetOf);
        return;
    }
    std::vector<std::pair<std::string, std::size_t>> names;
    std::transform(first, end, std::back_inserter(names),
                   [this](std::uint64_t key) { return std::pair(stringAt(text, offsetOf(key)), offsetOf(key)); });
    std::sort(names.begin(), names.end());
    for (auto at = names.begin() + 1; at != names.end(); ++at) {
        if (at->first == (at - 1)->first) {
            repeated.push_back(at->second);
        }
    }
}

}  // namespace TrellanTool
