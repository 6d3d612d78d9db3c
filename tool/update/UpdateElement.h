// What is told about an element that an update is to update: in events, and at the end of an update.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"

namespace TrellanTool {

struct UpdateElement {
    std::uint32_t index = 0;  // by which the library names it
    std::string name;         // by which --element-names selects it
    std::string label;        // its display name
    std::string from;         // the installed version; empty when not known
    std::string to;           // the version of its update file; empty when not known
    std::uint32_t phase = 0;  // in which it is updated, from 0
};

// The elements that `updater`, which has been applied, will update; in the order of their indices.
std::vector<UpdateElement> elementsToUpdate(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector);

// The elements with "index", "name", "from" and "to", and with "state" and "errors" as they are now.
TrellanJson::ordered_json outcomesOf(const std::vector<UpdateElement>& elements, ZoITrellanInspector& inspector);

// What was updated and what was not: a line for each of the elements. Of one that was not it says what it came to.
std::string accountOf(const std::vector<UpdateElement>& elements, ZoITrellanInspector& inspector);

}  // namespace TrellanTool
