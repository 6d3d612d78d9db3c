// Parsing JSON documents in linear time.
#pragma once

#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/Document.h"

namespace TrellanSimulation {

// The JSON document in `file`, from where it is read next; `text`, unless it is null, gets its bytes. Of members with
// the same name the last one counts, in the place of the first one. Throws DocumentFault when it is not valid JSON, or
// nested deeper than any tree, from where on it is not read; FileFault when it cannot be read.
Json parseDocument(RegularFile& file, std::string* text = nullptr);

}  // namespace TrellanSimulation
