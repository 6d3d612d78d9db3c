// Starting the updates of a phase.
#include <ctime>

#include "base/ErrorGuard.h"
#include "base/ErrorManager.h"
#include "base/Messages.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "operation/DriveFiles.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateInventory;

namespace {

constexpr int resultColumn = 56;  // of a failed start's "[ERROR]"; a progress line, which the verdict ends, is as long
constexpr unsigned pauseAfterStart = 500'000;  // microseconds

// Readers of the target's log know the message by this line and its function, wherever it stands today.
constexpr unsigned loggedLine = 504;
constexpr const char* loggedFunction = "startUpdatesOfPhase";

// The time that the target notes for an update file: local time taken as standard time, also while daylight saving is
// in force. Targets compare it with values made in this way.
unsigned long long fileTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm local;
    if (localtime_r(&now, &local) == nullptr) {
        return 0;
    }
    local.tm_isdst = 0;
    return static_cast<unsigned long long>(static_cast<long long>(std::mktime(&local)));
}

}  // namespace

void ZoCUpdateOperation::startUpdatesOfPhase(PhaseList& list)
{
    DriveFiles driveFiles(*assignment);
    startUpdatesOfPhase(list, driveFiles);
}

void ZoCUpdateOperation::startUpdatesOfPhase(PhaseList& list, DriveFiles& driveFiles)
{
    bool isFirst = true;
    for (ZoSUpdateElement* const element : list) {
        if (element->updateState != PENDING) {
            continue;
        }
        if (isFirst) {
            updater->print("\nUpdating:\n");
            isFirst = false;
        }
        const int printed = updater->print("%*s%s", 8, "", element->displayName.c_str());
        if (printed < resultColumn) {
            updater->print("%*s", resultColumn - printed, "");
        }
        errorManager().sendLog(updateStarted, loggedLine, loggedFunction, "%s", element->displayName.c_str());
        if (element->isFileSystemElement) {
            startFileSystemUpdate(*element, driveFiles);
        } else {
            startInventoryUpdate(*element);
        }
    }
}

void ZoCUpdateOperation::startFileSystemUpdate(ZoSUpdateElement& element, DriveFiles& driveFiles)
{
    std::vector<std::string> messages;
    if (writeFileSystemElement(*assignment->fileOf(element), element.location, driveFiles, messages)) {
        element.updateState = FINISHED;
        updater->print("\n");
    } else {
        element.writeError = messages.back();
        failToStart(element);
    }
    for (const std::string& message : messages) {
        updater->print("%*s%s", 12, "", message.c_str());
    }
}

void ZoCUpdateOperation::startInventoryUpdate(ZoSUpdateElement& element)
{
    if (!requestUpdate(element)) {
        failToStart(element);
        return;
    }
    element.updateState = RUNNING;
    updater->print("\n");
    ZoNRtosAbstraction::usleep(pauseAfterStart);
}

// Asks the inventory manager to start the update; false when it did not.
bool ZoCUpdateOperation::requestUpdate(ZoSUpdateElement& element)
{
    const unsigned long long time = fileTime();
    const std::string path = assignment->getArchive().pathOf(*assignment->fileOf(element));
    if (!path.starts_with('/')) {
        if (options->verbose) {
            updater->print("ERROR: Given path is not absolute: '%s'\n", path.c_str());
        }
        return false;
    }
    const ErrorGuard guard(*element.statusErrorList);
    ZoCInventoryManager::getInstance()->update2(*element.statusErrorList, element.boardAddress, lockHandle, element.id,
                                                path.c_str(), time, nullptr);
    return !guard.failed();
}

void ZoCUpdateOperation::failToStart(ZoSUpdateElement& element)
{
    element.updateState = FAILED;
    updater->print("[ERROR]\n");
    updater->ReportFailure(element.index);
}
