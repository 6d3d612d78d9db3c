// The course of an update: lock, phase after phase, unlock, results.
#include "base/ErrorGuard.h"
#include "base/FileAccess.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "operation/DriveFiles.h"
#include "operation/PendingElements.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateInventory;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace {

constexpr int updateLock = 0x10003;           // what the inventory manager is asked to lock
constexpr unsigned endOfPhases = 0xFFFFFFFF;  // reported in place of a phase

// Notes at the end of its scope, however that is left, how many errors there are by then.
class ErrorCounter {
public:
    ErrorCounter(const ZoCErrorListPool& errors, std::optional<unsigned>& noted) : errors(errors), noted(noted)
    {
        noted.reset();
    }
    ~ErrorCounter()
    {
        try {
            noted = errors.getErrorCount();
        } catch (...) {  // then none is noted
        }
    }
    ErrorCounter(const ErrorCounter&) = delete;
    ErrorCounter& operator=(const ErrorCounter&) = delete;

private:
    const ZoCErrorListPool& errors;
    std::optional<unsigned>& noted;
};

// Unlocks the target by `unlocking`, at the latest at the end of its scope: whether memory is short or the platform or
// a host's callback throws, the target must not stay locked.
template <class Unlocking>
class Unlocker {
public:
    explicit Unlocker(Unlocking unlocking) : unlocking(unlocking) {}
    Unlocker(const Unlocker&) = delete;
    Unlocker& operator=(const Unlocker&) = delete;

    ~Unlocker()
    {
        try {
            unlock();
        } catch (...) {  // what has ended the scope is on its way to the host and matters more
        }
    }

    void unlock()
    {
        if (isLocked) {
            isLocked = false;
            unlocking();
        }
    }

    // Leaves the target as it is.
    void release() { isLocked = false; }

private:
    Unlocking unlocking;
    bool isLocked = true;
};

}  // namespace

ZoCUpdateOperation::ZoCUpdateOperation(const ZoCTrellanUpdater* updater, const ZoNTrellanUpdater::ZoTOptions* options,
                                       ZoCUpdateAssignment* assignment)
    : updater(updater),
      options(options),
      assignment(assignment),
      elements(assignment->getInventory().getUpdateElementList())
{
}

bool ZoCUpdateOperation::update(ZoCErrorListPool& errors)
{
    setUpdateStates();
    const std::optional<bool> filesMissing = updateLocked(errors);
    return filesMissing && printUpdateResults(errors, *filesMissing);
}

// True when an update file was missing, nothing when the target could not be locked.
std::optional<bool> ZoCUpdateOperation::updateLocked(ZoCErrorListPool& errors)
{
    const ErrorCounter counter(errors, errorCountAtUnlock);
    if (!lockInventory(errors)) {
        return std::nullopt;
    }
    Unlocker unlocker([&] { unlockInventory(errors); });
    assignment->printUnsupportedUpdateElements();
    assignment->printNotRequiredUpdates();
    const bool filesMissing = updatePhases();
    unlocker.unlock();
    return filesMissing;
}

void ZoCUpdateOperation::setUpdateStates()
{
    for (ZoSUpdateElement& element : elements) {
        const bool isPending = !element.disabled && assignment->fileOf(element) != nullptr;
        element.updateState = isPending ? PENDING : NOTHING_TO_DO;
        element.statusErrorCount = 0;
        element.fileWasMissing = false;
        element.writeError.clear();
    }
}

// True when an update file was missing.
bool ZoCUpdateOperation::updatePhases()
{
    bool filesMissing = false;
    PendingElements pending(elements);
    DriveFiles driveFiles(*assignment);
    const unsigned phases = assignment->getNumberOfUpdatePhases();
    for (unsigned phase = 0; phase < phases; ++phase) {
        filesMissing |= updatePhase(phase, pending, driveFiles);
    }
    updater->ReportPhase(endOfPhases);
    return filesMissing;
}

// True when an update file was missing.
bool ZoCUpdateOperation::updatePhase(unsigned phase, PendingElements& pending, DriveFiles& driveFiles)
{
    updater->ReportPhase(phase);
    PhaseList list = pending.ofPhase(phase);
    const bool filesMissing = checkMissingUpdateFiles(list);
    startUpdatesOfPhase(list, driveFiles);
    updateStatus(list);
    updateErrors(list, pending);
    return filesMissing;
}

bool ZoCUpdateOperation::lockInventory(ZoCErrorListPool& errors)
{
    const ErrorGuard guard(errors);
    Unlocker unlocker([&] {
        if (lockHandle != 0) {
            unlockInventory(errors);
        }
    });
    ZoCInventoryManager::getInstance()->lock(errors, updateLock, lockHandle);
    unlocker.release();
    if (guard.failed() && options->verbose) {
        updater->print("ERROR: Cannot lock local system!\n");
    }
    return !guard.failed();
}

bool ZoCUpdateOperation::unlockInventory(ZoCErrorListPool& errors)
{
    bool isUnlocked = false;
    Unlocker unlocker([&] { isUnlocked = unlock(errors); });
    finishUpdates(errors);
    unlocker.unlock();
    return isUnlocked;
}

// Tells the target's nodes that no more updates will come.
void ZoCUpdateOperation::finishUpdates(ZoCErrorListPool& errors)
{
    ZoCInventoryManager& manager = *ZoCInventoryManager::getInstance();
    const ZoCUpdateInventory& inventory = assignment->getInventory();
    ZoCInventoryAddress node;
    if (inventory.getCnAddress(node)) {
        manager.updateFinish(errors, node, lockHandle, nullptr);
    }
    if (inventory.getHcnAddress(node)) {
        manager.updateFinish(errors, node, lockHandle, nullptr);
    }
}

bool ZoCUpdateOperation::unlock(ZoCErrorListPool& errors)
{
    const ErrorGuard guard(errors);
    ZoCInventoryManager::getInstance()->unlock(errors, lockHandle);
    if (guard.failed()) {
        if (options->verbose) {
            updater->print("ERROR: Cannot unlock target system!\n");
        }
        return false;
    }
    lockHandle = 0;
    return true;
}

void ZoCUpdateOperation::getUpdateElementsOfPhase(unsigned phase, PhaseList& list)
{
    const PhaseList found = PendingElements(elements).ofPhase(phase);
    list.insert(list.end(), found.begin(), found.end());
}

bool ZoCUpdateOperation::checkMissingUpdateFiles(PhaseList& list)
{
    bool isMissing = false;
    for (ZoSUpdateElement* const element : list) {
        ZoSUpdateFile& file = *assignment->fileOf(*element);
        if (isReadable(assignment->getArchive().pathOf(file))) {
            continue;
        }
        isMissing = true;
        file.fileMissing = true;
        element->updateState = NOTHING_TO_DO;
        element->fileWasMissing = true;
        updater->print("\n%s cannot be updated. Update file %s not found!\n", element->displayName.c_str(),
                       file.name.c_str());
    }
    return isMissing;
}

void ZoCUpdateOperation::cancelUpdates(const ZoCInventoryAddress& boardAddress, unsigned fromPhase)
{
    PendingElements pending(elements);
    cancelUpdates(boardAddress, fromPhase, pending);
}

void ZoCUpdateOperation::cancelUpdates(const ZoCInventoryAddress& boardAddress, unsigned fromPhase,
                                       PendingElements& pending)
{
    for (ZoSUpdateElement* const element : pending.ofBoard(boardAddress)) {
        if (element->phase >= fromPhase) {
            element->updateState = CANCELLED;
            updater->ReportFailure(element->index);
        }
    }
}
