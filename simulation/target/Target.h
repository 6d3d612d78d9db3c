// The simulated target as the platform's inventory manager sees it; one for the process.
//
// The operations are those of ZoCInventoryManager, without their trace. Errors go to the pools, the script's errors
// included.
#pragma once

#include <exception>
#include <filesystem>
#include <memory>
#include <string>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryAddress.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"
#include "simulation/target/FlashDrive.h"
#include "simulation/target/Script.h"
#include "simulation/target/UpdateSession.h"

namespace TrellanSimulation {

class Target {
public:
    static Target& instance();

    // Reads the target file that the environment variable TRELLAN_TARGET names at this moment and gives its tree.
    // Returns 0, or another number when `tree` is null. A target that cannot be read is also reported on standard
    // error, since a host that fails at this point prints no error list.
    int scan(ZoCErrorListPool& errors, ZoCInventoryItem*& tree);

    // Begins an update session on the target of the last scan. Returns its handle, 0 when it did not begin.
    unsigned lock(ZoCErrorListPool& errors);

    void update(ZoCErrorListPool& errors, const ZoCInventoryAddress& board, unsigned handle, unsigned id,
                const char* path);

    UpdateProgress poll(ZoCErrorListPool& errors, const ZoCInventoryAddress& board, unsigned id);

    void collectErrors(ZoCErrorListPool& errors, const ZoCInventoryAddress& board, unsigned handle, unsigned id,
                       ZoCErrorListPool& results);

    void finishNode(ZoCErrorListPool& errors, unsigned handle);

    // Ends the session: writes the changed target file and unlocks the target.
    void unlock(ZoCErrorListPool& errors, unsigned handle);

private:
    Target() = default;

    std::unique_ptr<TreeItem> readTree();
    void select();
    std::unique_ptr<TargetFile> takeLockedFile();
    bool isOfSession(unsigned handle) const;
    bool checkHandle(ZoCErrorListPool& errors, unsigned handle) const;
    void addTargetFault(ZoCErrorListPool& errors, const std::string& operation, const std::exception& fault) const;

    std::string name;            // of the target file, as it was given
    std::filesystem::path path;  // of the target file, without symbolic links; empty: none yet
    std::shared_ptr<const Script> script = std::make_shared<Script>();
    ScriptPositions positions;  // for as long as the path stays the same
    FlashDrive flashDrive;
    std::unique_ptr<TargetFile> scanned;  // what the last scan has read; null: nothing, or a session has it
    std::unique_ptr<UpdateSession> session;
    unsigned lastHandle = 0;
};

}  // namespace TrellanSimulation
