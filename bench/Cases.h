// What files state and elements have, in the cases that are measured in more than one way.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "inventory/ZoSUpdateElement.h"

using Element = ZoNUpdateInventory::ZoSUpdateElementValues;

using Members = std::function<nlohmann::json(unsigned)>;  // of the file entry with this number
using Change = std::function<void(Element&, unsigned)>;   // what the element with this number is

struct Case {
    Members members;
    Change change;
};

struct Size {
    unsigned files;
    unsigned elements;
};

// "V7" and the like.
std::string numbered(const char* text, unsigned number);

// The first `count` file entries.
nlohmann::json entriesOf(unsigned count, const Case& data);

// The element with this number. It is valid and active; its board type is "T" and its id 1 where the case says nothing.
Element elementOf(unsigned number, const Case& data);

// A target with the first `count` elements, each on a board of its own.
nlohmann::json targetOf(unsigned count, const Case& data);

// A plain archive: each file is for another board type.
Case manyBoardTypes();

// Hard cases: files that state much and fit little.

// Four properties with two sorts of values each. The elements have an even number of the second sort, the files accept
// an odd number: in any three properties a file accepts what many elements have, and in all four it never does. Each
// list of a file has `length` values.
Case fourLists(unsigned length);

// One file with `count` board types, which all share its `count` hardware versions; no element has one of these.
Case manyBoardTypesAndVersions(unsigned count);

// The same with a board object for each type, and two elements on each board that differ.
Case manyBoardsAndVersions(unsigned count);
