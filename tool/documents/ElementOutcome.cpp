#include "tool/documents/ElementOutcome.h"

#include <iterator>

#include "json/Json.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

// In the order of ZoTState.
constexpr const char* stateNames[] = {"noFile",  "custom", "upToDate",  "excluded",    "blocked",    "update",
                                      "updated", "failed", "cancelled", "missingFile", "notStarted", "running"};

}  // namespace

const char* stateName(ZoNTrellanInspector::ZoTState state)
{
    const auto position = static_cast<std::size_t>(state);
    return position < std::size(stateNames) ? stateNames[position] : "unknown";
}

ordered_json elementErrors(ZoITrellanInspector& inspector, unsigned index)
{
    ordered_json errors = ordered_json::array();
    for (unsigned i = 0; i < inspector.getElementErrorCount(index); ++i) {
        errors.push_back(errorRecord(inspector.getElementError(index, i)));
    }
    return errors;
}

ordered_json errorRecord(const ZoNTrellanInspector::ZoTError& error)
{
    return {{"code", error.hasCode ? ordered_json(error.code) : ordered_json()},
            {"text", error.text},
            {"originNode", error.originNode},
            {"time", error.time},
            {"mainModule", error.mainModule},
            {"subModule", error.subModule},
            {"function", error.function},
            {"line", error.line}};
}

}  // namespace TrellanTool
