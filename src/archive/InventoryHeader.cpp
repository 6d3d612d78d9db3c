// Update files that carry an inventory tree: the parameters below FIRMWARE of its root item.
#include <memory>

#include "archive/ZoCUpdateArchive.h"
#include "base/ErrorGuard.h"
#include "base/ErrorListHandle.h"
#include "base/FileAccess.h"
#include "libZoInventoryTree/ZoCInventoryData.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"

namespace {

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::notAvailable;

// Reads the parameter into `value`; false when the item does not have it or it cannot be read.
template <class T>
bool readParameter(ZoCErrorListPool& errors, const ZoCInventoryItem& root, const ZoCInventoryAddress& name, T& value)
{
    const ZoCInventoryAddress address = ZoNInventoryIDs::FIRMWARE / name;
    if (root.getParameter(address) == nullptr) {
        return false;
    }
    const ErrorGuard guard(errors);
    const T read = root.getValue<T>(errors, address);
    if (guard.failed()) {
        return false;
    }
    value = read;
    return true;
}

void readNumber(ZoCErrorListPool& errors, const ZoCInventoryItem& root, const ZoCInventoryAddress& name,
                std::uint32_t& value)
{
    if (!readParameter(errors, root, name, value)) {
        value = notAvailable;
    }
}

}  // namespace

int ZoCUpdateArchive::readUpdateFileInventory(const std::string& path, std::uint32_t& minHwCompatibilityId,
                                              std::uint32_t& maxHwCompatibilityId, std::uint32_t& minSwCompatibilityId,
                                              std::uint32_t& maxSwCompatibilityId, std::uint32_t& typeId,
                                              std::uint32_t& checksumCrc32, ZoCVersion& version)
{
    if (!canNameFile(path)) {
        return 1;
    }
    const ErrorListHandle errors = makeErrorList();
    const ErrorGuard guard(*errors);
    ZoCInventoryItem* item = nullptr;
    bool hasChecksum = false;
    unsigned checksum = 0;
    ZoCInventoryData::extractInventoryTreeFromFile(*errors, path.c_str(), item, hasChecksum, checksum);
    const std::unique_ptr<ZoCInventoryItem> root(item);
    if (guard.failed() || !root) {
        return 1;
    }
    readNumber(*errors, *root, ZoNInventoryIDs::MIN_HW_COMPATIBILITY_ID, minHwCompatibilityId);
    readNumber(*errors, *root, ZoNInventoryIDs::MAX_HW_COMPATIBILITY_ID, maxHwCompatibilityId);
    readNumber(*errors, *root, ZoNInventoryIDs::MIN_SW_COMPATIBILITY_ID, minSwCompatibilityId);
    readNumber(*errors, *root, ZoNInventoryIDs::MAX_SW_COMPATIBILITY_ID, maxSwCompatibilityId);
    readNumber(*errors, *root, ZoNInventoryIDs::TYPE_ID, typeId);
    if (hasChecksum) {
        checksumCrc32 = checksum;
    } else {
        readNumber(*errors, *root, ZoNInventoryIDs::CHECKSUM_CRC32, checksumCrc32);
    }
    if (!readParameter(*errors, *root, ZoNInventoryIDs::VERSION, version)) {
        version.setByULong64(notAvailable);
    }
    return 0;
}
