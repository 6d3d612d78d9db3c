// What became of an element, as documents and events tell it.
#pragma once

#include <array>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"

namespace TrellanTool {

// The states that an element may have before an update, in the order in which they are counted.
inline constexpr std::array statesBefore = {
    ZoNTrellanInspector::ZoTState::NO_FILE,    ZoNTrellanInspector::ZoTState::CUSTOM,
    ZoNTrellanInspector::ZoTState::UP_TO_DATE, ZoNTrellanInspector::ZoTState::EXCLUDED,
    ZoNTrellanInspector::ZoTState::BLOCKED,    ZoNTrellanInspector::ZoTState::UPDATE};

// The name of the state, such as "upToDate".
const char* stateName(ZoNTrellanInspector::ZoTState state);

// The errors of the update of the element with this index: an array, each with "code" (null for a message of the
// library itself), "text", "originNode", "time", "mainModule", "subModule", "function" and "line".
TrellanJson::ordered_json elementErrors(ZoITrellanInspector& inspector, unsigned index);

// One such error.
TrellanJson::ordered_json errorRecord(const ZoNTrellanInspector::ZoTError& error);

}  // namespace TrellanTool
