// Which entries no element is ever given, and which take elements from others.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "ZoITrellanInspector.h"
#include "archive/ZoSUpdateFile.h"

namespace ZoNUpdateInspection {

// What becomes of all elements, of any target, that an entry fits.
struct Reach {
    // An element that an entry before it takes.
    struct Example {
        std::size_t taker;
        ZoNTrellanInspector::ZoTKeys keys;
    };

    bool isReached = false;           // it is given some of them
    std::vector<std::size_t> takers;  // positions in the list of entries that take the others, ascending
    std::unique_ptr<Example> taken;   // of the first taker's; null when it has none
};

// For each of `files`, in the order of the description. Exact: whatever board type, variant and ids an element may
// have. An entry for the flash drive is always reached, and takes nothing from entries with an id.
std::vector<Reach> reachOf(const std::vector<const ZoNUpdateArchive::ZoSUpdateFile*>& files);

}  // namespace ZoNUpdateInspection
