#include "tool/documents/DuplicateKeys.h"

#include <algorithm>
#include <map>
#include <string>

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
    keys.push_back(std::uint64_t{std::hash<std::string_view>()(name)} << offsetBits | offset);
}

void DuplicateKeys::take(std::size_t object, const Use& use)
{
    std::sort(keys.begin() + static_cast<std::ptrdiff_t>(object), keys.end());
    const std::uint64_t* const end = keys.data() + keys.size();
    for (const std::uint64_t* first = keys.data() + object; first != end;) {
        const std::uint64_t* next = first + 1;
        while (next != end && hashOf(*next) == hashOf(*first)) {
            ++next;
        }
        handOut(first, next, use);
        first = next;
    }
    keys.resize(object);
}

// Keys with the same hash, in the order of the text. Nearly always they are all the same.
void DuplicateKeys::handOut(const std::uint64_t* first, const std::uint64_t* end, const Use& use) const
{
    if (end - first == 1) {
        const std::size_t only = offsetOf(*first);
        use({&only, 1});
        return;
    }
    std::vector<std::size_t> offsets(static_cast<std::size_t>(end - first));
    std::transform(first, end, offsets.begin(), offsetOf);
    const std::string name = stringAt(text, offsets.front());
    if (std::all_of(offsets.begin() + 1, offsets.end(),
                    [&](std::size_t offset) { return stringAt(text, offset) == name; })) {
        use(offsets);
        return;
    }
    std::map<std::string, std::vector<std::size_t>> byName;
    for (const std::size_t offset : offsets) {
        byName[stringAt(text, offset)].push_back(offset);
    }
    for (const auto& each : byName) {
        use(each.second);
    }
}

}  // namespace TrellanTool
