// A platform that throws when the scanned tree is given back: this program's deleteInventoryTree() of the inventory
// manager stands before the platform's.
#include <dlfcn.h>

#include <stdexcept>

#include "inventory/InventoryFixture.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"

namespace {

bool isThrowing = false;

}  // namespace

void ZoCInventoryManager::deleteInventoryTree(ZoCInventoryItem* tree)
{
    using Delete = void(ZoCInventoryManager*, ZoCInventoryItem*);
    static Delete* const usual = reinterpret_cast<Delete*>(
        ::dlsym(RTLD_NEXT, "_ZN19ZoCInventoryManager19deleteInventoryTreeEP16ZoCInventoryItem"));
    usual(this, tree);
    if (isThrowing) {
        throw std::runtime_error("the platform's own");
    }
}

namespace {

class ThrowingPlatform : public InventoryFixture {
protected:
    ThrowingPlatform() { isThrowing = true; }
    ~ThrowingPlatform() override { isThrowing = false; }
};

TEST_F(ThrowingPlatform, DoesNotEndTheProcessAfterAScan)
{
    EXPECT_EQ(read({board("NETC", {}, {named(1, "A")})}), 1);
    EXPECT_EQ(names(), std::vector<std::string>{"A"});
}

}  // namespace
