// The inputs of the benchmarks, always the same: what the entries of an archive state and the elements of a target are,
// and the documents that say so.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

#include "inventory/ZoSUpdateElement.h"

using Json = nlohmann::ordered_json;
using Element = ZoNUpdateInventory::ZoSUpdateElementValues;

using Members = std::function<Json(unsigned)>;           // of the file entry with this number
using Change = std::function<void(Element&, unsigned)>;  // what the element with this number is

struct Case {
    Members members;
    Change change;
    unsigned elementsOfBoard = 1;  // elements behind one another that share a board, and what is the board's
};

// "V7" and the like.
std::string numbered(const char* text, unsigned number);

// The description of an archive with the first `count` entries of the case. An entry has a name, a sequence, a checksum
// and a version where the case says nothing.
Json descriptionOf(unsigned count, const Members& members);

// The element with this number. It is valid, active, of a version below that of the files, and its board type is "T"
// and its id 1 where the case says nothing.
Element elementOf(unsigned number, const Change& change);

// A target with the `count` elements of the case from the number `first` on.
Json targetOf(unsigned count, const Case& data, unsigned first = 0);

// The document as people and programs write it to files: with indentation.
std::string textOf(const Json& document);
