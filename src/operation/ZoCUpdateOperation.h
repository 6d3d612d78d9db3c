// ZoCUpdateOperation: carries out the updates, phase by phase.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"
#include "assignment/ZoCUpdateAssignment.h"

class PendingElements;
class DriveFiles;
class ZoCTrellanUpdater;

class ZoCUpdateOperation {
public:
    using PhaseList = std::vector<ZoNUpdateInventory::ZoSUpdateElement*>;

    // Keeps all pointers; they must outlive the operation.
    ZoCUpdateOperation(const ZoCTrellanUpdater* updater, const ZoNTrellanUpdater::ZoTOptions* options,
                       ZoCUpdateAssignment* assignment);
    ZoCUpdateOperation(const ZoCUpdateOperation&) = delete;
    ZoCUpdateOperation& operator=(const ZoCUpdateOperation&) = delete;

    // Updates the target. True only for a complete success; otherwise what failed has been printed (a failed lock only
    // with `verbose`), and the errors are in `errors`. Not to be called while it runs: the updater sees to that.
    bool update(ZoCErrorListPool& errors);

    // How many errors that list held when the last update had unlocked the target, or could not lock it: what is behind
    // them is of elements. Nothing before the first update, and while it runs.
    std::optional<unsigned> getErrorCountAtUnlock() const { return errorCountAtUnlock; }

    // Lock and unlock the target. False when errors were added; printed only with `verbose`. Unlocking tells the CN and
    // the HCN first that no more updates will come; the target is unlocked also when that throws, and when locking it
    // throws although it gave a handle.
    bool lockInventory(ZoCErrorListPool& errors);
    bool unlockInventory(ZoCErrorListPool& errors);

    // Appends the pending elements of the phase, in list order.
    void getUpdateElementsOfPhase(unsigned phase, PhaseList& list);

    // Takes the elements whose update file is missing out of the update. True when at least one was missing.
    bool checkMissingUpdateFiles(PhaseList& list);

    // Starts every pending update of the list; files on the flash drive are written at once. One that needs the place
    // of another one of the list for its temporary file is refused.
    void startUpdatesOfPhase(PhaseList& list);

    // Waits until no update of the list is running, showing the progress.
    void updateStatus(PhaseList& list);

    // Fetches the errors of the list's finished updates, and cancels later updates of a board whose update failed.
    void updateErrors(PhaseList& list);

    // Cancels the pending updates of a board from the phase `fromPhase` on: they build on the ones before.
    void cancelUpdates(const ZoCInventoryAddress& boardAddress, unsigned fromPhase);

    // Prints the outcome and appends the errors of every element that had something to do to `errors`. True only for a
    // complete success.
    bool printUpdateResults(ZoCErrorListPool& errors, bool filesMissing) const;

    // Writes `file` to `location` on the flash drive by way of a new temporary file, which is on the disk before it
    // takes the target's place. `messages` becomes what there is to tell, in order; after false its last entry is the
    // error. Refused before anything is changed: a location that leaves the drive, through ".." or a symbolic link, or
    // names no file; a path that a shell does not take literally; a pipe or a device as `file`. Refused before a file
    // is changed: a temporary file in the place of one that an element or an entry names, and another path to a file
    // that the update has written. A symbolic link to a folder on the drive is followed; one in the place of the target
    // or of its temporary file is replaced, unless a file is named by way of it. When anything fails after the copying,
    // the temporary file is left, unless it is not as large as `file`.
    bool writeFileSystemElement(const ZoNUpdateArchive::ZoSUpdateFile& file, const ZoCString& location,
                                std::vector<std::string>& messages);

private:
    void setUpdateStates();
    void finishUpdates(ZoCErrorListPool& errors);
    bool unlock(ZoCErrorListPool& errors);
    std::optional<bool> updateLocked(ZoCErrorListPool& errors);
    bool updatePhases();
    bool updatePhase(unsigned phase, PendingElements& pending, DriveFiles& driveFiles);
    void startFileSystemUpdate(ZoNUpdateInventory::ZoSUpdateElement& element, DriveFiles& driveFiles);
    void startInventoryUpdate(ZoNUpdateInventory::ZoSUpdateElement& element);
    bool requestUpdate(ZoNUpdateInventory::ZoSUpdateElement& element);
    void failToStart(ZoNUpdateInventory::ZoSUpdateElement& element);
    unsigned long long pollElement(ZoNUpdateInventory::ZoSUpdateElement& element);
    bool collectErrors(ZoNUpdateInventory::ZoSUpdateElement& element, PendingElements& pending);
    void printFailure(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

    // The operations of these names within an update, which knows what is pending and what it has written.
    void startUpdatesOfPhase(PhaseList& list, DriveFiles& driveFiles);
    void updateErrors(PhaseList& list, PendingElements& pending);
    void cancelUpdates(const ZoCInventoryAddress& boardAddress, unsigned fromPhase, PendingElements& pending);
    bool writeFileSystemElement(const ZoNUpdateArchive::ZoSUpdateFile& file, const ZoCString& location,
                                DriveFiles& driveFiles, std::vector<std::string>& messages);

    const ZoCTrellanUpdater* updater;
    const ZoNTrellanUpdater::ZoTOptions* options;
    ZoCUpdateAssignment* assignment;
    ZoCUpdateInventory::ElementList& elements;  // the inventory's
    std::uint32_t lockHandle = 0;               // 0: not locked
    std::optional<unsigned> errorCountAtUnlock;
};
