// What an inventory-tree file is taken for by what the platform answers: errors, a tree, both or neither. This
// program's extractInventoryTreeFromFile() stands before that of the platform.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <functional>

#include "HeaderValues.h"
#include "libZoInventoryTree/ZoCInventoryData.h"
#include "support/TempDir.h"
#include "support/UpdateFiles.h"

namespace {

// Changes the platform's answer, where there is one.
std::function<void(ZoCErrorListPool& errors, ZoCInventoryItem*& root)> changeAnswer;

}  // namespace

void ZoCInventoryData::extractInventoryTreeFromFile(ZoCErrorListPool& errors, const char* path, ZoCInventoryItem*& root,
                                                    bool& hasChecksum, unsigned& checksum)
{
    using Extract = void(ZoCErrorListPool&, const char*, ZoCInventoryItem*&, bool&, unsigned&);
    static Extract* const usual = reinterpret_cast<Extract*>(
        ::dlsym(RTLD_NEXT,
                "_ZN16ZoCInventoryData28extractInventoryTreeFromFileER16ZoCErrorListPoolPKcRP16ZoCInventoryItemRbRj"));
    usual(errors, path, root, hasChecksum, checksum);
    if (changeAnswer) {
        changeAnswer(errors, root);
    }
}

namespace {

class InventoryAnswers : public ::testing::Test {
protected:
    ~InventoryAnswers() override { changeAnswer = nullptr; }

    // The code for a sound inventory-tree file that the platform reads with this answer.
    int codeWith(const decltype(changeAnswer)& change)
    {
        changeAnswer = change;
        const auto path = folder.write("update.json", UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 600}}));
        return readHeader(&ZoCUpdateArchive::readUpdateFileInventory, path.string()).code;
    }

    static void addError(ZoCErrorListPool& errors)
    {
        ZoSErrorRecord error;
        error.code = 7;
        errors.addError(error);
    }

    static void dropTree(ZoCInventoryItem*& root)
    {
        delete root;
        root = nullptr;
    }

    TempDir folder;
};

}  // namespace

TEST_F(InventoryAnswers, ATreeWithoutErrorsIsOfThisKind)
{
    EXPECT_EQ(codeWith([](ZoCErrorListPool&, ZoCInventoryItem*&) {}), 0);
}

TEST_F(InventoryAnswers, ATreeWithErrorsIsNotOfThisKind)
{
    EXPECT_EQ(codeWith([](ZoCErrorListPool& errors, ZoCInventoryItem*&) { addError(errors); }), 1);
}

TEST_F(InventoryAnswers, NoTreeIsNotOfThisKindAlsoWithoutErrors)
{
    EXPECT_EQ(codeWith([](ZoCErrorListPool&, ZoCInventoryItem*& root) { dropTree(root); }), 1);
}
