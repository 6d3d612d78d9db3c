// Whether the target can reboot by itself: a question of the board at its top and of that board's firmware.
#include <optional>

#include "base/ErrorGuard.h"
#include "inventory/ProductAddresses.h"
#include "inventory/SubItems.h"
#include "inventory/ZoCUpdateInventory.h"

using namespace ZoNUpdateBase;
using namespace ZoNInventoryIDs;
using namespace ZoNUpdateInventory;

namespace {

// Values of rebootSupportState.
constexpr std::uint32_t supported = 0;
constexpr std::uint32_t notSupportedByFirmware = 2;
constexpr std::uint32_t notSupportedByDevice = 3;
constexpr std::uint32_t checkFailed = 4;

struct MinimumVersion {
    const char* boardType;
    const char* version;
};

constexpr MinimumVersion minimumVersions[] = {
    {"KR5120", "23.2a12"},
    {"KR5140", "5.0"},
};

const char* minimumVersionOf(const ZoCString& boardType)
{
    for (const MinimumVersion& minimum : minimumVersions) {
        if (boardType == minimum.boardType) {
            return minimum.version;
        }
    }
    return nullptr;
}

// The value, or nothing when reading it added errors.
template <class T>
std::optional<T> readChecked(ZoCErrorListPool& errors, const ZoCInventoryItem& item, const ZoCInventoryAddress& address)
{
    const ErrorGuard guard(errors);
    T value = item.getValue<T>(errors, address);
    return guard.failed() ? std::nullopt : std::optional<T>(std::move(value));
}

// Whether `item` is the firmware in use.
std::optional<bool> isActiveFirmware(ZoCErrorListPool& errors, const ZoCInventoryItem& item)
{
    const auto active = readChecked<unsigned char>(errors, item, ACTIVE);
    if (!active) {
        return std::nullopt;
    }
    if (*active == 0) {
        return false;
    }
    const auto name = readChecked<ZoCString>(errors, item, NAME);
    if (!name) {
        return std::nullopt;
    }
    return *name == "UserFirmware" || *name == "FactoryFirmware";
}

}  // namespace

void ZoCUpdateInventory::determineRebootSupport(ZoCErrorListPool& errors, ZoCInventoryItem* tree)
{
    rebootSupportState = rebootSupportOf(errors, tree);
}

std::uint32_t ZoCUpdateInventory::rebootSupportOf(ZoCErrorListPool& errors, ZoCInventoryItem* tree) const
{
    const ZoCInventoryItem* const board = tree->getFirstSubItem();
    if (board == nullptr) {
        return checkFailed;
    }
    if (board->getID()[1] != HCN) {
        return notSupportedByDevice;
    }
    const ZoCInventoryItem* const updateInfo = board->getItem(UPDATE_INFO);
    if (board->getParameter(product().boardType) == nullptr || updateInfo == nullptr) {
        return checkFailed;
    }
    const auto boardType = readChecked<ZoCString>(errors, *board, product().boardType);
    if (!boardType) {
        return checkFailed;
    }
    const char* const minimumVersion = minimumVersionOf(*boardType);
    if (minimumVersion == nullptr) {
        return notSupportedByDevice;
    }
    for (const ZoCInventoryItem& item : SubItems(*updateInfo)) {
        const auto isFirmware = isActiveFirmware(errors, item);
        if (!isFirmware) {
            return checkFailed;
        }
        if (*isFirmware) {
            const auto version = readChecked<ZoCVersion>(errors, item, VERSION);
            if (!version) {
                return checkFailed;
            }
            return *version < ZoCVersion(minimumVersion) ? notSupportedByFirmware : supported;
        }
    }
    return rebootSupportState;  // without active firmware nothing is known that was not known before
}
