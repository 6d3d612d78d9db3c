// Update files that carry an inventory tree: the parameters below FIRMWARE of its root item.
#include <memory>

#include "archive/FileHeader.h"
#include "base/ErrorGuard.h"
#include "base/ErrorListHandle.h"
#include "base/FileAccess.h"
#include "libZoInventoryTree/ZoCInventoryData.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"

using namespace ZoNUpdateBase;

namespace ZoNUpdateArchive {
namespace {

// Reads the parameter into `value`; false, and `value` as it was, when the item does not have it or it cannot be read.
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

}  // namespace

bool readInventoryHeader(const std::string& path, FileHeader& header)
{
    if (!canNameFile(path)) {
        return false;
    }
    const ErrorListHandle errors = makeErrorList();
    const ErrorGuard guard(*errors);
    ZoCInventoryItem* item = nullptr;
    bool hasChecksum = false;
    unsigned checksum = 0;
    ZoCInventoryData::extractInventoryTreeFromFile(*errors, path.c_str(), item, hasChecksum, checksum);
    const std::unique_ptr<ZoCInventoryItem> root(item);
    if (guard.failed() || !root) {
        return false;
    }
    header.kind = FileKind::inventoryTree;
    readParameter(*errors, *root, ZoNInventoryIDs::MIN_HW_COMPATIBILITY_ID, header.minHwCompatibilityId);
    readParameter(*errors, *root, ZoNInventoryIDs::MAX_HW_COMPATIBILITY_ID, header.maxHwCompatibilityId);
    readParameter(*errors, *root, ZoNInventoryIDs::MIN_SW_COMPATIBILITY_ID, header.minSwCompatibilityId);
    readParameter(*errors, *root, ZoNInventoryIDs::MAX_SW_COMPATIBILITY_ID, header.maxSwCompatibilityId);
    readParameter(*errors, *root, ZoNInventoryIDs::TYPE_ID, header.typeId);
    if (hasChecksum) {
        header.checksumCrc32 = checksum;
    } else {
        readParameter(*errors, *root, ZoNInventoryIDs::CHECKSUM_CRC32, header.checksumCrc32);
    }
    ZoCVersion version;
    if (readParameter(*errors, *root, ZoNInventoryIDs::VERSION, version)) {
        header.version = version;
    }
    return true;
}

}  // namespace ZoNUpdateArchive
