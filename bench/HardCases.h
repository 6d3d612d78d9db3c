// Cases that are harder than they look.
#pragma once

#include "Inputs.h"

// Each file is for another board type.
Case manyBoardTypes();

// Four properties with two sorts of values each. The elements have an even number of the second sort, the files accept
// an odd number: in any three properties a file accepts what many elements have, and in all four it never does. Each
// list of a file has `length` values.
Case fourLists(unsigned length);

// One file with `count` board types, which all share its `count` hardware versions; no element has one of these.
Case manyBoardTypesAndVersions(unsigned count);

// The same with a board object for each type, and two elements for each type that differ.
Case manyBoardsAndVersions(unsigned count);

// Files that are all for the same elements but for their software versions, and elements that are all alike: of `count`
// files the last one fits.
Case oneKeyForAll(unsigned count);
