// Why elements get the files that they get, and why others do not fit, as text and as JSON.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"
#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

class Explanations {
public:
    // Of what the updater has read. Both must outlive the explanations; `forced`: updates are repeated by --force.
    Explanations(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector, bool forced);

    // How many elements there are.
    unsigned elementCount() const { return records.count(); }

    // The element with this index: what every document says of it, and "reason" and "candidates".
    TrellanJson::ordered_json element(unsigned index);

    // The file at this position in the library's list: "file", "name", and "elements" of the board types that it is
    // for.
    TrellanJson::ordered_json file(unsigned position);

    // The same as text, with a line end.
    void printElement(std::ostream& out, unsigned index);
    void printFile(std::ostream& out, unsigned position);

private:
    std::string reason(unsigned index);
    std::string reasonWithFile(unsigned index, const ZoNTrellanInspector::ZoTElement& element);
    std::string reasonWithoutFile(unsigned index);
    std::string needText(unsigned index, const ZoNTrellanInspector::ZoTElement& element);

    ElementRecords records;
    ZoITrellanInspector& inspector;
    const bool forced;
};

}  // namespace TrellanTool
