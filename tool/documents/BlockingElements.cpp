#include "tool/documents/BlockingElements.h"

#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

void forEachBlockingElement(const ElementRecords& records, ZoITrellanInspector& inspector,
                            const std::function<void(const std::string&)>& take)
{
    for (unsigned i = 0; i < records.count(); ++i) {
        const ZoNTrellanInspector::ZoTElement& element = inspector.getElement(i);
        if (element.blocksUpdate) {
            const ZoNTrellanUpdater::ZoTUpdateElement& listed = records.listed(i);
            take("the archive has no file for " + listed.displayName + " (board " + listed.boardType + ", element " +
                 element.name + ")");
        }
    }
}

}  // namespace TrellanTool
