// The inspector's creation, and what it tells of the target and of the update as a whole.
#include <memory>
#include <stdexcept>

#include "inspection/Explanation.h"
#include "inspection/FileKeys.h"
#include "inspection/ZoCTrellanInspector.h"
#include "inventory/InventoryRecord.h"
#include "operation/ZoCUpdateOperation.h"

ZoITrellanInspector* ZoITrellanInspector::createInstance(ZoITrellanUpdater& updater)
{
    auto* const inspected = dynamic_cast<ZoCTrellanUpdater*>(&updater);
    if (inspected == nullptr) {
        throw std::invalid_argument("ZoITrellanInspector: an updater of another make");
    }
    return std::make_unique<ZoCTrellanInspector>(*inspected).release();
}

ZoCTrellanInspector::ZoCTrellanInspector(ZoCTrellanUpdater& updater) : updater(updater) {}

ZoCTrellanInspector::~ZoCTrellanInspector() = default;

bool ZoCTrellanInspector::isTargetSupported()
{
    return updater.getAssignment().isTargetSupported();
}

unsigned ZoCTrellanInspector::getPhaseCount()
{
    return updater.getAssignment().getNumberOfUpdatePhases();
}
