// Pointers to the elements of a list, for those who walk over it more than once: through the list itself, an element
// must have been fetched from memory before the next one can be.
#pragma once

#include <vector>

namespace ZoNUpdateBase {

// In the order of the list. Good as long as no element is taken out of it.
template <class List>
auto pointersTo(List& list)
{
    std::vector<decltype(&list.front())> pointers;
    pointers.reserve(list.size());
    for (auto& element : list) {
        pointers.push_back(&element);
    }
    return pointers;
}

}  // namespace ZoNUpdateBase
