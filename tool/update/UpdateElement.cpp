// The elements that were to be updated, and what became of them, in words and as JSON.
#include "tool/update/UpdateElement.h"

#include <memory>

#include "json/Json.h"
#include "tool/documents/ElementOutcome.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;
using ZoNTrellanInspector::ZoTState;

std::string versionsOf(const UpdateElement& element)
{
    const auto orDash = [](const std::string& version) { return version.empty() ? "-" : version; };
    if (element.from.empty() && element.to.empty()) {
        return element.label;
    }
    return element.label + ", " + orDash(element.from) + " -> " + orDash(element.to);
}

const char* whyNotUpdated(ZoTState state)
{
    switch (state) {
        case ZoTState::FAILED:
            return "failed";
        case ZoTState::CANCELLED:
            return "cancelled, since an earlier update of its board failed";
        case ZoTState::MISSING_FILE:
            return "its update file is missing";
        case ZoTState::RUNNING:
            return "still running";
        default:
            return "not started";
    }
}

}  // namespace

std::vector<UpdateElement> elementsToUpdate(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector)
{
    ZoNTrellanUpdater::ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    const std::unique_ptr<ZoNTrellanUpdater::ZoTUpdateElement[]> owner(list);
    std::vector<UpdateElement> elements;
    for (unsigned i = 0; i < count; ++i) {
        const ZoNTrellanInspector::ZoTElement& details = inspector.getElement(i);
        if (details.state == ZoTState::UPDATE) {
            elements.push_back({list[i].index, details.name, list[i].displayName, list[i].installedVersion,
                                list[i].availableVersion, list[i].phase});
        }
    }
    return elements;
}

ordered_json outcomesOf(const std::vector<UpdateElement>& elements, ZoITrellanInspector& inspector)
{
    ordered_json outcomes = ordered_json::array();
    for (const UpdateElement& element : elements) {
        outcomes.push_back({{"index", element.index},
                            {"name", element.name},
                            {"from", element.from},
                            {"to", element.to},
                            {"state", stateName(inspector.getElement(element.index).state)},
                            {"errors", elementErrors(inspector, element.index)}});
    }
    return outcomes;
}

std::string accountOf(const std::vector<UpdateElement>& elements, ZoITrellanInspector& inspector)
{
    std::string account;
    for (const UpdateElement& element : elements) {
        const ZoTState state = inspector.getElement(element.index).state;
        account += account.empty() ? "" : "\n";
        account += state == ZoTState::UPDATED
                       ? "updated: " + versionsOf(element)
                       : "not updated: " + versionsOf(element) + " (" + whyNotUpdated(state) + ")";
    }
    return account;
}

}  // namespace TrellanTool
