// A platform that throws when something is given back, the scanned tree or an error list: this program's
// deleteInventoryTree() of the inventory manager and deleteErrorList() of the error manager stand before the
// platform's.
#include <dlfcn.h>

#include <stdexcept>

#include "inventory/InventoryFixture.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"

namespace {

bool isThrowing = false;
unsigned thrownForLists = 0;

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

void ZoCErrorManager::deleteErrorList(ZoCErrorList* list)
{
    using Delete = void(ZoCErrorManager*, ZoCErrorList*);
    static Delete* const usual =
        reinterpret_cast<Delete*>(::dlsym(RTLD_NEXT, "_ZN15ZoCErrorManager15deleteErrorListEP12ZoCErrorList"));
    usual(this, list);
    if (isThrowing) {
        ++thrownForLists;
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

TEST_F(ThrowingPlatform, DoesNotEndTheProcessWhenElementsAreForgotten)
{
    ASSERT_EQ(read({board("NETC", {}, {named(1, "A")})}), 1);
    thrownForLists = 0;
    EXPECT_EQ(read({board("NETC", {}, {named(1, "B")})}), 1);
    EXPECT_EQ(names(), std::vector<std::string>{"B"});
    EXPECT_EQ(thrownForLists, 2u);
}

}  // namespace
