// The platform's inventory manager on the simulated target: each operation is the target's, and traced.
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"

#include <memory>

#include "simulation/base/Trace.h"
#include "simulation/libZoInventoryTree/AddressText.h"
#include "simulation/target/Target.h"

using namespace TrellanSimulation;

namespace {

// Traces the record that `make` gives, with the number of errors that the call has added.
template <class Make>
void traceWithErrors(unsigned gained, Make make)
{
    traceCall([&] {
        TraceRecord record = make();
        if (gained != 0) {
            record["errors"] = gained;
        }
        return record;
    });
}

// What an operation returns, for callers that do not look at the errors.
int resultOf(unsigned gained)
{
    return gained == 0 ? 0 : 1;
}

const char* orEmpty(const char* text)
{
    return text == nullptr ? "" : text;
}

}  // namespace

ZoCInventoryManager::ZoCInventoryManager() = default;

ZoCInventoryManager::~ZoCInventoryManager() = default;

ZoCInventoryManager* ZoCInventoryManager::getInstance()
{
    static ZoCInventoryManager manager;
    return &manager;
}

int ZoCInventoryManager::scan(ZoCErrorListPool& errors, ZoCInventoryItem*& tree, bool complete, const char*)
{
    const unsigned before = errors.getErrorCount();
    const int result = Target::instance().scan(errors, tree);
    traceWithErrors(errors.getErrorCount() - before, [&] {
        return TraceRecord{{"call", "scan"}, {"argument", complete}, {"result", result}};
    });
    return result;
}

void ZoCInventoryManager::deleteInventoryTree(ZoCInventoryItem* tree)
{
    const std::unique_ptr<ZoCInventoryItem> released(tree);
    traceCall([] { return TraceRecord{{"call", "deleteInventoryTree"}}; });
}

int ZoCInventoryManager::lock(ZoCErrorListPool& errors, int mode, unsigned& handle)
{
    const unsigned before = errors.getErrorCount();
    handle = Target::instance().lock(errors);
    const unsigned gained = errors.getErrorCount() - before;
    traceWithErrors(gained, [&] { return TraceRecord{{"call", "lock"}, {"argument", mode}, {"handle", handle}}; });
    return resultOf(gained);
}

int ZoCInventoryManager::update2(ZoCErrorListPool& errors, const ZoCInventoryAddress& boardAddress, unsigned lockHandle,
                                 unsigned elementId, const char* filePath, unsigned long long fileTime, const char*)
{
    const unsigned before = errors.getErrorCount();
    Target::instance().update(errors, boardAddress, lockHandle, elementId, orEmpty(filePath));
    const unsigned gained = errors.getErrorCount() - before;
    traceWithErrors(gained, [&] {
        return TraceRecord{{"call", "update2"},         {"board", itemAddressText(boardAddress)},
                           {"handle", lockHandle},      {"id", elementId},
                           {"path", orEmpty(filePath)}, {"fileTime", fileTime}};
    });
    return resultOf(gained);
}

int ZoCInventoryManager::updateStatus2(ZoCErrorListPool& errors, const ZoCInventoryAddress& boardAddress, unsigned& id,
                                       unsigned& status, unsigned& done, unsigned& total, const char*)
{
    const unsigned before = errors.getErrorCount();
    const UpdateProgress progress = Target::instance().poll(errors, boardAddress, id);
    status = progress.status;
    done = progress.done;
    total = progress.total;
    const unsigned gained = errors.getErrorCount() - before;
    traceWithErrors(gained, [&] {
        return TraceRecord{{"call", "updateStatus2"},
                           {"board", itemAddressText(boardAddress)},
                           {"id", id},
                           {"status", status},
                           {"done", done},
                           {"total", total}};
    });
    return resultOf(gained);
}

int ZoCInventoryManager::updateErrors2(ZoCErrorListPool& errors, const ZoCInventoryAddress& boardAddress,
                                       unsigned lockHandle, unsigned id, ZoCErrorListPool& results, const char*)
{
    const unsigned before = errors.getErrorCount();
    const unsigned resultsBefore = results.getErrorCount();
    Target::instance().collectErrors(errors, boardAddress, lockHandle, id, results);
    const unsigned gained = errors.getErrorCount() - before;
    traceWithErrors(gained + results.getErrorCount() - resultsBefore, [&] {
        return TraceRecord{
            {"call", "updateErrors2"}, {"board", itemAddressText(boardAddress)}, {"handle", lockHandle}, {"id", id}};
    });
    return resultOf(gained);
}

int ZoCInventoryManager::updateFinish(ZoCErrorListPool& errors, const ZoCInventoryAddress& nodeAddress,
                                      unsigned lockHandle, const char*)
{
    const unsigned before = errors.getErrorCount();
    Target::instance().finishNode(errors, lockHandle);
    const unsigned gained = errors.getErrorCount() - before;
    traceWithErrors(gained, [&] {
        return TraceRecord{{"call", "updateFinish"}, {"node", itemAddressText(nodeAddress)}, {"handle", lockHandle}};
    });
    return resultOf(gained);
}

int ZoCInventoryManager::unlock(ZoCErrorListPool& errors, unsigned lockHandle)
{
    const unsigned before = errors.getErrorCount();
    Target::instance().unlock(errors, lockHandle);
    const unsigned gained = errors.getErrorCount() - before;
    traceWithErrors(gained, [&] { return TraceRecord{{"call", "unlock"}, {"handle", lockHandle}}; });
    return resultOf(gained);
}
