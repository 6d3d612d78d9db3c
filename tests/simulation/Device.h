// Shorthands for driving the simulated device through the platform's inventory manager.
#pragma once

#include <string>

#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "support/ErrorPool.h"

// A scan whose tree is released at the end of its scope.
class Scan {
public:
    Scan() { result = ZoCInventoryManager::getInstance()->scan(errors, tree, true, nullptr); }
    ~Scan()
    {
        if (tree != nullptr) {
            ZoCInventoryManager::getInstance()->deleteInventoryTree(tree);
        }
    }
    Scan(const Scan&) = delete;
    Scan& operator=(const Scan&) = delete;

    // The item at `address` below the root item.
    const ZoCInventoryItem& item(const ZoCInventoryAddress& address) const { return *tree->getItem(address); }

    ErrorPool errors;
    ZoCInventoryItem* tree = nullptr;
    int result = 0;
};

// How an update stands.
struct Poll {
    unsigned status = 99;
    unsigned done = 99;
    unsigned total = 99;

    bool operator==(const Poll&) const = default;
};

// A locked device; it is unlocked at the end of its scope. Errors of all calls are in `errors`.
class Session {
public:
    Session() { manager().lock(errors, 0x10003, handle); }
    ~Session() { unlock(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    static ZoCInventoryManager& manager() { return *ZoCInventoryManager::getInstance(); }

    void start(unsigned id, const std::string& path)
    {
        manager().update2(errors, board, handle, id, path.c_str(), 0, nullptr);
    }

    Poll poll(unsigned id)
    {
        Poll poll;
        manager().updateStatus2(errors, board, id, poll.status, poll.done, poll.total, nullptr);
        return poll;
    }

    void collect(unsigned id) { manager().updateErrors2(errors, board, handle, id, results, nullptr); }

    void unlock()
    {
        if (handle != 0) {
            manager().unlock(errors, handle);
            handle = 0;
        }
    }

    ZoCInventoryAddress board = ZoNInventoryIDs::ROOT / ZoNInventoryIDs::HCN;
    ErrorPool errors;
    ErrorPool results;
    unsigned handle = 0;
};
