// apply() and run(): what each command reads and does.
#include "assignment/ZoCUpdateAssignment.h"
#include "base/ErrorManager.h"
#include "base/Messages.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNTrellanUpdater;

namespace {

// Results of apply().
constexpr unsigned applied = 0;
constexpr unsigned failed = 1;
constexpr unsigned notSupported = 2;

// Readers of the warnings know this one by its line number and function, wherever it is sent from.
constexpr unsigned warningLine = 268;
constexpr const char* warningFunction = "run";

// What a command needs before it can run. Commands beyond the table need nothing but the banner.
struct Needs {
    bool banner;
    bool archive;
    bool inventory;
    bool assignment;
};

constexpr Needs needs[] = {
    /* TOOL_VERSION       */ {false, false, false, false},
    /* ARCHIVE_VERSION    */ {false, true, false, false},
    /* PRINT_ARCHIVE      */ {true, true, false, false},
    /* OUTPUT_DESCRIPTION */ {false, true, false, false},
    /* INSTALLED_VERSIONS */ {true, false, true, false},
    /* READ_INVENTORY     */ {true, false, true, false},
    /* COMPARE_VERSIONS   */ {true, true, true, true},
    /* UPDATE             */ {true, true, true, true},
};

Needs needsOf(std::uint32_t command)
{
    return command < std::size(needs) ? needs[command] : Needs{true, false, false, false};
}

// Marks an updater as at work for the time of a scope.
class WorkMark {
public:
    explicit WorkMark(bool& mark) : isAtWork(mark) { isAtWork = true; }
    ~WorkMark() { isAtWork = false; }
    WorkMark(const WorkMark&) = delete;
    WorkMark& operator=(const WorkMark&) = delete;

private:
    bool& isAtWork;
};

void printReportedErrors(const ZoCTrellanUpdater& updater, const ZoCErrorListPool& errors)
{
    if (errors.getErrorCount() != 0) {
        updater.print("\nReported errors:\n");
        updater.printErrorList(errors, 7);
    }
}

// A host that stops an update by throwing must learn that the target could not be unlocked behind it, and not whoever
// updates next. What was thrown matters more than what this throws.
void printErrorsBehindThrow(const ZoCTrellanUpdater& updater, const ZoCErrorListPool& errors)
{
    try {
        printReportedErrors(updater, errors);
    } catch (...) {
    }
}

}  // namespace

unsigned ZoCTrellanUpdater::apply()
{
    if (isAtWork) {
        return failed;  // a callback must not pull the elements away from under its caller
    }
    const WorkMark mark(isAtWork);
    ZoCErrorListPool& errors = errorManager().getMasterErrorList();
    const Needs needed = needsOf(options.command);
    if (needed.banner) {
        print(
            "\nVelorant Device Update Tool, Vs %s\n"
            "Copyright (c) Velorant. All rights reserved.\n"
            " \n",
            getToolVersion().getAsString().c_str());
    }
    if (needed.archive) {
        assignment->forgetAssignment();
        isArchiveRead = archive->read(errors);
    }
    if (needed.archive && !isArchiveRead) {
        print("ERROR: Failed to read firmware archive.\n");
        return failed;
    }
    return needed.inventory ? readTarget(errors, needed.assignment) : applied;
}

unsigned ZoCTrellanUpdater::readTargetAgain(ZoCErrorListPool& errors)
{
    if (isAtWork || !isArchiveRead) {
        return failed;
    }
    const WorkMark mark(isAtWork);
    assignment->forgetAssignment();
    return readTarget(errors, true);
}

unsigned ZoCTrellanUpdater::readTarget(ZoCErrorListPool& errors, bool withAssignment)
{
    if (inventory->getInventory(errors) == 0) {
        print(
            "ERROR: Cannot read target device information.\n"
            "\tPower-cycle the system and retry.\n"
            "\tIf the problem persists, contact Velorant support.\n");
        return failed;
    }
    if (withAssignment) {
        assignment->makeAssignment();
    }
    if (options.command == UPDATE && !checkHcnCnSupport()) {
        print("ERROR: The target system is not supported by this firmware archive.\n");
        return notSupported;
    }
    return applied;
}

bool ZoCTrellanUpdater::checkHcnCnSupport()
{
    if (assignment->computeTargetSupport()) {
        return true;
    }
    for (auto& element : inventory->getUpdateElementList()) {
        element.disabled = true;
    }
    return false;
}

int ZoCTrellanUpdater::run()
{
    if (isAtWork) {
        return 0;
    }
    const WorkMark mark(isAtWork);
    ZoCErrorListPool& errors = errorManager().getMasterErrorList();
    bool performed = false;
    try {
        performed = performCommand(errors);
    } catch (...) {
        printErrorsBehindThrow(*this, errors);
        throw;
    }
    printReportedErrors(*this, errors);
    return performed && errors.getErrorCount() == 0 ? 1 : 0;
}

// False when the command failed.
bool ZoCTrellanUpdater::performCommand(ZoCErrorListPool& errors)
{
    switch (options.command) {
        case TOOL_VERSION:
            print("%s\n", getToolVersion().getAsString().c_str());
            return true;
        case ARCHIVE_VERSION:
            archive->outputArchiveVersion();
            return true;
        case PRINT_ARCHIVE:
            archive->printArchive();
            return true;
        case OUTPUT_DESCRIPTION:
            archive->outputDescriptionFile();
            return true;
        case INSTALLED_VERSIONS:
            inventory->printVersions();
            return true;
        case COMPARE_VERSIONS:
            assignment->printVersionsComparison();
            return true;
        case UPDATE:
            if (!operation->update(errors)) {
                return false;
            }
            if (archive->getUnsupportedElements() != 0) {
                errorManager().sendWarning(unsupportedElements, warningLine, warningFunction);
            }
            return true;
        default:
            return true;
    }
}
