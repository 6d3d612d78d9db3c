// A scan of its own for the record of the target's inventory, and what the record holds.
#include <stdexcept>

#include "base/ErrorListHandle.h"
#include "inspection/ErrorRecord.h"
#include "inspection/ZoCTrellanInspector.h"
#include "inventory/InventoryRecord.h"
#include "inventory/ScannedTree.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateInventory;

namespace {

const RecordOmission& entryAt(const std::vector<RecordOmission>& list, unsigned position)
{
    if (position >= list.size()) {
        throw std::out_of_range("ZoITrellanInspector: nothing was recorded there");
    }
    return list[position];
}

}  // namespace

bool ZoCTrellanInspector::recordInventory()
{
    inventoryRecord.reset();
    scanErrors.reset();
    ZoNUpdateBase::ErrorListHandle errors = ZoNUpdateBase::makeErrorList();
    const ScannedTree tree = scanTarget(*errors);
    scanErrors = ZoNUpdateInspection::keptOf(std::move(errors));
    inventoryRecord = tree ? std::make_unique<InventoryRecord>(*tree) : nullptr;
    return inventoryRecord != nullptr;
}

unsigned ZoCTrellanInspector::getScanErrorCount()
{
    return ZoNUpdateInspection::countOf(scanErrors);
}

const ZoTError& ZoCTrellanInspector::getScanError(unsigned position)
{
    scanError = ZoNUpdateInspection::errorAt(scanErrors, position);
    return scanError;
}

unsigned ZoCTrellanInspector::getRecordedItemCount()
{
    return static_cast<unsigned>(recorded().itemCount());
}

const ZoTRecordedItem& ZoCTrellanInspector::getRecordedItem(unsigned position)
{
    RecordedItem source = recorded().item(position);
    recordedItem.level = source.level;
    recordedItem.id = std::move(source.id);
    recordedItem.parameterCount = source.parameterCount;
    return recordedItem;
}

const ZoTRecordedParameter& ZoCTrellanInspector::getRecordedParameter(unsigned item, unsigned position)
{
    const RecordedParameter& source = recorded().parameter(item, position);
    recordedParameter.address = source.address;
    recordedParameter.isText = source.isText;
    recordedParameter.text = source.text;
    recordedParameter.number = source.number;
    return recordedParameter;
}

unsigned ZoCTrellanInspector::getOmissionCount()
{
    return static_cast<unsigned>(recorded().omissions().size());
}

const ZoTOmission& ZoCTrellanInspector::getOmission(unsigned position)
{
    const RecordOmission& source = entryAt(recorded().omissions(), position);
    omission.item = source.item;
    omission.parameter = source.parameter;
    omission.reason = source.reason;
    return omission;
}

const InventoryRecord& ZoCTrellanInspector::recorded() const
{
    static const InventoryRecord nothing;
    return inventoryRecord ? *inventoryRecord : nothing;
}
