// The elements of an updater as the documents tell them.
#pragma once

#include <memory>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"

namespace TrellanTool {

// What an archive entry would have to state to fit an element, as the member "keys" tells it.
TrellanJson::ordered_json keysRecord(const ZoNTrellanInspector::ZoTKeys& keys);

class ElementRecords {
public:
    // The elements as they are now; with their files where `withFiles`. Both must outlive the records.
    ElementRecords(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector, bool withFiles);

    unsigned count() const { return size; }

    // What the document says of the element with this index: all that the updater's list gives, its name, keys and
    // checksums, with files its state, and where it was to be updated its errors.
    TrellanJson::ordered_json at(unsigned index) const;

    // The element in the updater's list.
    const ZoNTrellanUpdater::ZoTUpdateElement& listed(unsigned index) const { return list[index]; }

private:
    std::unique_ptr<ZoNTrellanUpdater::ZoTUpdateElement[]> list;
    unsigned size = 0;
    ZoITrellanInspector& inspector;
    const bool withFiles;
};

}  // namespace TrellanTool
