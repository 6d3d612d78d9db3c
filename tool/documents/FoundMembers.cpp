#include "tool/documents/FoundMembers.h"

#include <algorithm>

namespace TrellanTool {

void FoundMembers::add(std::size_t offset, const std::string& object)
{
    if (objects.empty() || objects.back().pointer != object) {
        objects.push_back({offsets.size(), object});
    }
    offsets.push_back(offset);
}

void FoundMembers::take(FoundMembers& others)
{
    while (!others.objects.empty()) {
        objects.push_back({others.objects.front().first + offsets.size(), std::move(others.objects.front().pointer)});
        others.objects.pop_front();
    }
    offsets.insert(offsets.end(), others.offsets.begin(), others.offsets.end());
    others.clear();
}

void FoundMembers::clear()
{
    offsets.clear();
    objects.clear();
}

const std::string& FoundMembers::object(std::size_t position) const
{
    const auto behind =
        std::upper_bound(objects.begin(), objects.end(), position,
                         [](std::size_t number, const Object& object) { return number < object.first; });
    return (behind - 1)->pointer;
}

}  // namespace TrellanTool
