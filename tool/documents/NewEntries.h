// The file entries that fit given elements, and nothing else.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/Json.h"

namespace TrellanTool {

// An element that an entry is wanted for.
struct WantedElement {
    ZoNTrellanInspector::ZoTKeys keys;
    std::string name;
    std::string boardAddress;      // such as "/ROOT/HCN/CN"
    std::string installedVersion;  // empty when not known
};

// An entry for all elements of its board type that have its id, or target path, and of each list one of the values.
struct NewEntry {
    // Positions in `lists`, in the order in which an entry states them.
    enum List : std::size_t { boardVariant, boardId, hwCompatibilityId, swCompatibilityId, listCount };
    using Values = std::set<TrellanJson::json>;

    std::string boardType;
    bool isFile = false;
    std::uint32_t id = 0;
    std::string targetPath;
    std::array<Values, listCount> lists;
    unsigned sequence = 0;     // I/O boards come first, then the compute node, the host communication node last
    std::string elementName;   // of its first element
    std::string version;       // installed, of its first element that has one; empty: none has
    std::size_t firstElement;  // position of the first element
};

// Each element fits one of the entries and no other, and an entry fits nothing but such elements: elements of a board
// type with the same id, or target path, share an entry where their keys are all that its lists can mean together. An
// element that takes any path gets a path of its own; its entry comes before those that it would take too.
std::vector<NewEntry> newEntries(const std::vector<WantedElement>& elements);

}  // namespace TrellanTool
