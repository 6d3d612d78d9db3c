#include "tool/documents/UpdateDocument.h"

#include "json/IsText.h"
#include "json/Json.h"
#include "tool/documents/ElementOutcome.h"
#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

ordered_json updatedElement(const ElementRecords& records, unsigned index, const UpdateKnowledge& known)
{
    ordered_json element = records.at(index);
    if (known.givenUp && TrellanJson::isText(element["state"], "update")) {
        element["state"] = "notStarted";
        element["errors"] = ordered_json::array();
    }
    if (known.verified != nullptr && element.contains("errors")) {
        const std::optional<bool>& verified = (*known.verified)[index];
        element["verified"] = verified ? ordered_json(*verified) : ordered_json();
    }
    return element;
}

// Those that are of no element.
void writeErrors(DocumentWriter& writer, ZoITrellanInspector& inspector, const UpdateKnowledge& known)
{
    const unsigned general = inspector.getGeneralErrorCount();
    const std::size_t ofScan = known.scanErrors != nullptr ? known.scanErrors->size() : 0;
    writer.list("errors", general + static_cast<unsigned>(ofScan), [&](unsigned i) {
        return i < general ? errorRecord(inspector.getGeneralError(i)) : (*known.scanErrors)[i - general];
    });
}

}  // namespace

void writeUpdateDocument(std::ostream& out, ZoITrellanUpdater& updater, ZoITrellanInspector& inspector,
                         const UpdateKnowledge& known)
{
    DocumentWriter writer(out, "update");
    writer.error(known.error);
    writer.list("findings", static_cast<unsigned>(known.findings.size()),
                [&](unsigned i) { return findingRecord(known.findings[i]); });
    writeErrors(writer, inspector, known);
    const ElementRecords records(updater, inspector, true);
    writer.list("elements", records.count(), [&](unsigned i) { return updatedElement(records, i, known); });
    writer.end();
}

}  // namespace TrellanTool
