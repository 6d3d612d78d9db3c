#include "tool/documents/BlockingElements.h"

#include <memory>

namespace TrellanTool {

std::string blockingElements(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector)
{
    ZoNTrellanUpdater::ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    const std::unique_ptr<ZoNTrellanUpdater::ZoTUpdateElement[]> owner(list);
    std::string lines;
    for (unsigned i = 0; i < count; ++i) {
        const ZoNTrellanInspector::ZoTElement& element = inspector.getElement(i);
        if (element.blocksUpdate) {
            lines += lines.empty() ? "" : "\n";
            lines += "the archive has no file for " + list[i].displayName + " (board " + list[i].boardType +
                     ", element " + element.name + ")";
        }
    }
    return lines;
}

}  // namespace TrellanTool
