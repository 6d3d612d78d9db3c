// What the platform has handed out and not got back yet, so that tests can tell whether anything was left over.
#pragma once

namespace TrellanSimulation {

struct Resources {
    int errorLists = 0;      // made by ZoCErrorManager::createErrorList
    int inventoryTrees = 0;  // given by ZoCInventoryManager::scan or ZoCInventoryData
    int messageTables = 0;   // registered with ZoCErrorManager
    int locks = 0;           // given by ZoCInventoryManager::lock
};

// The process's counts, to be changed by whoever hands out or takes back.
Resources& resources();

}  // namespace TrellanSimulation
