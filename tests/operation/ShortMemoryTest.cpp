// An update that cannot end in order, because memory is short or the platform throws: the target is unlocked all the
// same. This program's operator new, and its lock(), updateFinish() and unlock() of the inventory manager, stand before
// the others.
#include <dlfcn.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <utility>

#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "operation/OperationFixture.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

unsigned allocationsLeft = 0;  // until one fails; 0: none fails
bool hasFailed = false;

std::vector<std::string> endCalls;  // "updateFinish" and "unlock" in their order
enum class LockThrows { never, beforeItLocks, afterwards } lockThrows = LockThrows::never;
std::size_t throwingFinish = 0;  // the call of updateFinish that throws: 1 is the first, 0 none

template <class Function>
Function* platformFunction(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

void* operator new(std::size_t size)
{
    if (allocationsLeft != 0 && --allocationsLeft == 0) {
        hasFailed = true;
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc();
}

// The sanitizers bring one of their own, whose memory the functions below must not be given.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

int ZoCInventoryManager::lock(ZoCErrorListPool& errors, int mode, unsigned& handle)
{
    using Lock = int(ZoCInventoryManager*, ZoCErrorListPool&, int, unsigned&);
    static Lock* const usual = platformFunction<Lock>("_ZN19ZoCInventoryManager4lockER16ZoCErrorListPooliRj");
    if (lockThrows == LockThrows::beforeItLocks) {
        throw std::logic_error("the platform's own");
    }
    const int result = usual(this, errors, mode, handle);
    if (lockThrows == LockThrows::afterwards) {
        throw std::logic_error("the platform's own");
    }
    return result;
}

int ZoCInventoryManager::updateFinish(ZoCErrorListPool& errors, const ZoCInventoryAddress& node, unsigned handle,
                                      const char* reserved)
{
    using Finish = int(ZoCInventoryManager*, ZoCErrorListPool&, const ZoCInventoryAddress&, unsigned, const char*);
    static Finish* const usual = platformFunction<Finish>(
        "_ZN19ZoCInventoryManager12updateFinishER16ZoCErrorListPoolRK19ZoCInventoryAddressjPKc");
    endCalls.emplace_back("updateFinish");
    if (throwingFinish != 0 && --throwingFinish == 0) {
        throw std::logic_error("the platform's own");
    }
    const unsigned left = std::exchange(allocationsLeft, 0);  // the platform's own do not count
    const int result = usual(this, errors, node, handle, reserved);
    allocationsLeft = left;
    return result;
}

int ZoCInventoryManager::unlock(ZoCErrorListPool& errors, unsigned handle)
{
    using Unlock = int(ZoCInventoryManager*, ZoCErrorListPool&, unsigned);
    static Unlock* const usual = platformFunction<Unlock>("_ZN19ZoCInventoryManager6unlockER16ZoCErrorListPoolj");
    allocationsLeft = 0;
    endCalls.emplace_back("unlock");
    return usual(this, errors, handle);
}

namespace {

unsigned allocationsAfterTheLastPhase = 0;

void letMemoryRunShortAtTheEnd(unsigned phase)
{
    if (phase == 0xFFFFFFFF) {
        allocationsLeft = allocationsAfterTheLastPhase;
    }
}

void throwTheHostsOwn(unsigned)
{
    throw std::runtime_error("the host's own");
}

}  // namespace

class ShortMemory : public OperationFixture {
protected:
    ~ShortMemory() override
    {
        throwingFinish = 0;
        lockThrows = LockThrows::never;
    }

    // A target with two nodes and one element.
    void prepareNodes()
    {
        addHcn();
        addCn();
        addElement(1, 1);
        prepare();
        endCalls.clear();
    }
};

TEST_F(ShortMemory, UnlocksTheTargetWhenAnAllocationFailsBeforeItWasUnlocked)
{
    prepareNodes();
    updater->setPhaseCallBack(letMemoryRunShortAtTheEnd);
    unsigned tries = 0;
    do {
        hasFailed = false;
        endCalls.clear();
        allocationsAfterTheLastPhase = ++tries;
        try {
            update();
        } catch (const std::bad_alloc&) {
        }
        ASSERT_THAT(endCalls, Contains("unlock")) << tries;
    } while (hasFailed);
    EXPECT_GT(tries, 1u);
}

TEST_F(ShortMemory, UnlocksTheTargetWhenANodeCannotBeToldOfTheEnd)
{
    prepareNodes();
    throwingFinish = 1;
    EXPECT_THROW(update(), std::logic_error);
    EXPECT_THAT(endCalls, ElementsAre("updateFinish", "unlock"));

    endCalls.clear();
    throwingFinish = 2;
    EXPECT_THROW(update(), std::logic_error);
    EXPECT_THAT(endCalls, ElementsAre("updateFinish", "updateFinish", "unlock"));

    EXPECT_TRUE(update());
}

TEST_F(ShortMemory, UnlocksTheTargetWhenTheLockThrowsAfterItHasLocked)
{
    prepareNodes();
    lockThrows = LockThrows::afterwards;
    EXPECT_THROW(update(), std::logic_error);
    EXPECT_THAT(endCalls, ElementsAre("updateFinish", "updateFinish", "unlock"));

    lockThrows = LockThrows::never;
    EXPECT_TRUE(update());
}

TEST_F(ShortMemory, UnlocksNothingWhenTheLockThrowsBeforeItLocks)
{
    prepareNodes();
    lockThrows = LockThrows::beforeItLocks;
    EXPECT_THROW(update(), std::logic_error);
    EXPECT_THAT(endCalls, IsEmpty());
}

TEST_F(ShortMemory, PassesOnWhatTheHostHasThrownAndNotWhatTheNodesThrowAtTheEnd)
{
    prepareNodes();
    updater->setPhaseCallBack(throwTheHostsOwn);
    throwingFinish = 1;

    EXPECT_THROW(update(), std::runtime_error);

    EXPECT_THAT(endCalls, ElementsAre("updateFinish", "unlock"));
}
