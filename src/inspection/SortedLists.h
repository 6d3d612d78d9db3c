// Lists of values in ascending order.
#pragma once

#include <vector>

namespace ZoNUpdateInspection {

// True when the lists have a value in common.
template <class Value>
bool intersect(const std::vector<Value>& a, const std::vector<Value>& b)
{
    for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end();) {
        if (*i == *j) {
            return true;
        }
        ++(*i < *j ? i : j);
    }
    return false;
}

}  // namespace ZoNUpdateInspection
