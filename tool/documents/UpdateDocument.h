// The documents of the command that updates the target.
#pragma once

#include <iosfwd>
#include <optional>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/Json.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/Findings.h"

namespace TrellanTool {

struct Arguments;

// What is known of an update beside its elements.
struct UpdateKnowledge {
    const std::vector<Finding>& findings;
    const DocumentError* error = nullptr;  // null: it went through
    // Elements that are still to be updated count as not started: the update is given up before the target is locked.
    bool givenUp = false;
    // For each element whether a later scan shows its file's content, nothing where that cannot be told; null: nobody
    // has asked for such a scan.
    const std::vector<std::optional<bool>>* verified = nullptr;
    // Errors of that scan, as errorRecord() tells them; null: there are none.
    const std::vector<TrellanJson::ordered_json>* scanErrors = nullptr;
};

// Writes what became of the elements, and the errors that are of none.
void writeUpdateDocument(std::ostream& out, ZoITrellanUpdater& updater, ZoITrellanInspector& inspector,
                         const UpdateKnowledge& known);

}  // namespace TrellanTool
