// ZoCInventoryManager: the target's inventory manager.
//
// Gives the target's inventory tree and carries out updates of its elements. An update session is: lock, for each
// element update2, updateStatus2 until it has finished and updateErrors2, then updateFinish for the target's nodes, and
// unlock.
//
// Every operation that can fail takes an error pool; it has failed when it added errors to it, and returns 0 only when
// it did not. The exception is scan, whose result alone counts: a tree may come with errors. Strings and addresses are
// only read during the call. Trailing `const char*` arguments are reserved: pass null.
//
// Not thread safe: all calls, those to the trees included, come from the host's thread.
#pragma once

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryAddress.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

class ZoCInventoryManager {
public:
    ZoCInventoryManager(const ZoCInventoryManager&) = delete;
    ZoCInventoryManager& operator=(const ZoCInventoryManager&) = delete;

    // The process's only instance; lives as long as the process.
    static ZoCInventoryManager* getInstance();

    // Reads the target's inventory. Returns 0 on success; `tree` is then the root item, to be released with
    // deleteInventoryTree, even when errors were added. On failure it returns another number, of either sign, and
    // `tree` is null. `complete` asks for the whole target, all nodes included.
    int scan(ZoCErrorListPool& errors, ZoCInventoryItem*& tree, bool complete, const char* reserved);

    // Releases a tree given by scan, with all its items. Null is allowed.
    void deleteInventoryTree(ZoCInventoryItem* tree);

    // Locks the target for updates by this process; `mode` says what is locked. `handle` becomes the handle that the
    // operations below ask for: never 0 on success, 0 when locking failed.
    int lock(ZoCErrorListPool& errors, int mode, unsigned& handle);

    // Starts the update of element `elementId` of the board at `boardAddress` with the file at `filePath` (absolute).
    // `fileTime` is the time stamp that the target notes for the file, in seconds since 1970. Returns at once; the
    // update goes on at the target.
    int update2(ZoCErrorListPool& errors, const ZoCInventoryAddress& boardAddress, unsigned lockHandle,
                unsigned elementId, const char* filePath, unsigned long long fileTime, const char* reserved);

    // Asks how the update of element `id` stands. `status` becomes 1 while it is running, with `done` of `total` units
    // of work; 2 when it has finished; any other value when it has failed. A call that adds errors has found out
    // nothing: what it gives does not count, not even `status` 2, and the update may go on.
    int updateStatus2(ZoCErrorListPool& errors, const ZoCInventoryAddress& boardAddress, unsigned& id, unsigned& status,
                      unsigned& done, unsigned& total, const char* reserved);

    // Fetches what the update of element `id` has reported at the target: its errors go to `results`, errors of the
    // call itself to `errors`.
    int updateErrors2(ZoCErrorListPool& errors, const ZoCInventoryAddress& boardAddress, unsigned lockHandle,
                      unsigned id, ZoCErrorListPool& results, const char* reserved);

    // Tells the node at `nodeAddress` that no more updates will come.
    int updateFinish(ZoCErrorListPool& errors, const ZoCInventoryAddress& nodeAddress, unsigned lockHandle,
                     const char* reserved);

    // Gives the lock back. The handle is not valid afterwards.
    int unlock(ZoCErrorListPool& errors, unsigned lockHandle);

private:
    ZoCInventoryManager();
    ~ZoCInventoryManager();
};
