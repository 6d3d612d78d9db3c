// Scan, lock, updates and unlock, each on the one target file that the environment names.
#include "simulation/target/Target.h"

#include <cstdlib>

#include "simulation/base/Clock.h"
#include "simulation/base/StandardError.h"
#include "simulation/libZoInventoryTree/AddressText.h"
#include "simulation/libZoInventoryTree/PlatformErrors.h"
#include "simulation/target/AtomicFile.h"

namespace TrellanSimulation {

namespace {

// Adds the errors of a call's script entry, if there is one; false when there were any.
template <class Call>
bool passes(ZoCErrorListPool& pool, const std::optional<Call>& entry)
{
    if (!entry || entry->errors.empty()) {
        return true;
    }
    entry->errors.addTo(pool);
    return false;
}

}  // namespace

Target& Target::instance()
{
    static Target target;
    return target;
}

int Target::scan(ZoCErrorListPool& errors, ZoCInventoryItem*& tree)
{
    constexpr int failed = 1;
    tree = nullptr;
    try {
        auto items = readTree();
        const auto entry = positions.next(script->scan, "scan");
        passes(errors, entry);
        if (entry && entry->result != 0) {
            return entry->result;
        }
        tree = TreeItem::handOut(std::move(items));
        return 0;
    } catch (const std::runtime_error& fault) {
        addTargetFault(errors, "", fault);
        tellOnStandardError("ERROR 0x26300007: " +
                            platformErrorText(PlatformError::targetUnreadable, {name, fault.what()}));
        return failed;
    }
}

unsigned Target::lock(ZoCErrorListPool& errors)
{
    try {
        flashDrive.requireInside();
        if (path.empty()) {
            select();
            scanned = std::make_unique<TargetFile>(path);
            script = scanned->script();
        }
        if (!passes(errors, positions.next(script->lock, "lock"))) {
            return 0;
        }
        auto targetLock = TargetLock::acquire(path, flashDrive.folder());
        if (!targetLock) {
            addPlatformError(errors, PlatformError::targetLocked, {});
            return 0;
        }
        removeLeftOvers(path);
        session = std::make_unique<UpdateSession>(path, takeLockedFile(), std::move(targetLock), lastHandle + 1);
        useClock(session->file().clock());
        script = session->file().script();
        return ++lastHandle;
    } catch (const std::runtime_error& fault) {
        addTargetFault(errors, "", fault);
        return 0;
    }
}

void Target::update(ZoCErrorListPool& errors, const ZoCInventoryAddress& board, unsigned handle, unsigned id,
                    const char* filePath)
{
    try {
        flashDrive.requireInside();
    } catch (const std::runtime_error& fault) {
        addTargetFault(errors, "", fault);
        return;
    }
    const std::string key = elementKey(board, id);
    if (!passes(errors, positions.next(script->element(key).start, "start", key)) || !checkHandle(errors, handle)) {
        return;
    }
    if (!session->file().hasElement(key)) {
        addPlatformError(errors, PlatformError::elementUnknown, {std::to_string(id), itemAddressText(board)});
        return;
    }
    const auto content = readUpdateContent(filePath);
    if (!content) {
        addPlatformError(errors, PlatformError::updateFileUnreadable, {filePath});
        return;
    }
    session->start(key, *content);
}

UpdateProgress Target::poll(ZoCErrorListPool& errors, const ZoCInventoryAddress& board, unsigned id)
{
    const std::string key = elementKey(board, id);
    if (!session || !session->isStarted(key)) {
        return {};
    }
    const auto polls = script->element(key).polls;
    const auto entry = positions.next(polls, "polls", key);
    const bool succeeds = passes(errors, entry);
    const UpdateProgress progress = entry           ? UpdateProgress{entry->status, entry->done, entry->total}
                                    : polls.empty() ? session->progress(key)
                                                    : session->finishedProgress(key);
    constexpr unsigned finished = 2;
    if (succeeds && progress.status == finished) {
        session->finish(key);
    }
    return progress;
}

void Target::collectErrors(ZoCErrorListPool& errors, const ZoCInventoryAddress& board, unsigned handle, unsigned id,
                           ZoCErrorListPool& results)
{
    const std::string key = elementKey(board, id);
    const auto entry = positions.next(script->element(key).finish, "finish", key);
    passes(errors, entry);
    if (entry) {
        entry->results.addTo(results);
    }
    checkHandle(errors, handle);
}

void Target::finishNode(ZoCErrorListPool& errors, unsigned handle)
{
    passes(errors, positions.next(script->updateFinish, "updateFinish"));
    checkHandle(errors, handle);
}

// However it ends, also when memory is short, the target is not locked any more.
void Target::unlock(ZoCErrorListPool& errors, unsigned handle)
{
    const std::unique_ptr<UpdateSession> ended = isOfSession(handle) ? std::move(session) : nullptr;
    passes(errors, positions.next(script->unlock, "unlock"));
    if (!ended) {
        checkHandle(errors, handle);
        return;
    }
    try {
        ended->file().save();
    } catch (const std::runtime_error& fault) {
        addTargetFault(errors, "it cannot be written: ", fault);
    }
}

// While the target is locked nobody else changes its file, and the session has the newer values.
std::unique_ptr<TreeItem> Target::readTree()
{
    select();
    const bool locked = session && session->path() == path;
    if (!locked) {
        scanned = std::make_unique<TargetFile>(path);
    }
    TargetFile& file = locked ? session->file() : *scanned;
    script = file.script();
    useClock(file.clock());
    flashDrive.attach(path, file.flashDrive());
    return file.makeTree();
}

// Another process may have updated the device between the scan and the lock.
std::unique_ptr<TargetFile> Target::takeLockedFile()
{
    std::unique_ptr<TargetFile> file = std::move(scanned);
    return file && file->isUnchanged() ? std::move(file) : std::make_unique<TargetFile>(path);
}

void Target::select()
{
    const char* given = std::getenv("TRELLAN_TARGET");
    if (given == nullptr || *given == '\0') {
        name = "(none)";
        throw DocumentFault("the environment variable TRELLAN_TARGET names none");
    }
    name = given;
    std::error_code fault;
    const auto selected = std::filesystem::weakly_canonical(given, fault);
    if (fault) {
        throw DocumentFault(fault.message());
    }
    if (selected != path) {
        path = selected;
        positions = {};
        scanned.reset();
        script = std::make_shared<Script>();
    }
}

bool Target::isOfSession(unsigned handle) const
{
    return session && handle == session->handle();
}

bool Target::checkHandle(ZoCErrorListPool& errors, unsigned handle) const
{
    const bool valid = isOfSession(handle);
    if (!valid) {
        addPlatformError(errors, PlatformError::handleInvalid, {std::to_string(handle)});
    }
    return valid;
}

void Target::addTargetFault(ZoCErrorListPool& errors, const std::string& operation, const std::exception& fault) const
{
    addPlatformError(errors, PlatformError::targetUnreadable, {name, operation + fault.what()});
}

}  // namespace TrellanSimulation
