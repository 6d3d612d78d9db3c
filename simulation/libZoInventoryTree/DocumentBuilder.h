// Parsing JSON documents in linear time.
#pragma once

#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/Document.h"

namespace TrellanSimulation {

// The JSON document in `file`, from where it is read next. Of members with the same name the last one counts, in the
// place of the first one. Throws DocumentFault when it is not valid JSON, FileFault when it cannot be read.
Json parseDocument(RegularFile& file);

}  // namespace TrellanSimulation
