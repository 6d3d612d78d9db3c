// What an update would do.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/ElementRecords.h"
#include "tool/documents/Findings.h"

namespace TrellanTool {

struct Arguments;

class DryRun {
public:
    // What `updater`, which was applied for `arguments`, would do when it ran. All that is passed must outlive this;
    // `description` is the text of the archive's description.
    DryRun(const Arguments& arguments, ZoITrellanUpdater& updater, ZoITrellanInspector& inspector,
           const std::string& description);

    // As a text for people.
    void writeText(std::ostream& out) const;

    // As a document, with what the check found and, unless null, why the update is refused; its digest stands last.
    void writeDocument(std::ostream& out, const std::vector<Finding>& findings, const DocumentError* error) const;

    // Whether there is something to update.
    bool wouldUpdate() const;

    // The parts of the document, for a plan to be held against.
    const ElementRecords& elements() const { return records; }
    TrellanJson::ordered_json archive() const;
    TrellanJson::ordered_json options() const;
    TrellanJson::ordered_json phases() const;

private:
    using State = ZoNTrellanInspector::ZoTState;

    std::vector<unsigned> inState(State state) const;
    void writePhases(std::ostream& out) const;
    void writeState(std::ostream& out, const char* heading, State state) const;

    const Arguments& arguments;
    ZoITrellanUpdater& updater;
    ZoITrellanInspector& inspector;
    const std::string& description;
    const ElementRecords records;
    std::vector<State> states;                   // of each element
    std::vector<std::vector<unsigned>> updates;  // the elements of each phase
};

}  // namespace TrellanTool
