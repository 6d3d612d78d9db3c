// Whether an update file is meant for an update element.
#include "assignment/EntryProperties.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::EntryProperties;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

using ZoNJson::json;

// A property that must allow what the element is. What an entry leaves out has a default, never a wildcard.
struct Criterion {
    std::string key;
    json (*elementValue)(const ZoSUpdateElement& element);
    json defaultValue;
};

json toJson(const ZoCString& text)
{
    return json(ZoCTrellanUpdater::ZoCString2tstring(text));
}

json variantOf(const ZoSUpdateElement& element)
{
    return element.variant.isEmpty() ? json(nullptr) : toJson(element.variant);
}

const Criterion& boardVariant()
{
    static const Criterion criterion{"boardVariant", variantOf, nullptr};
    return criterion;
}

const Criterion& boardId()
{
    static const Criterion criterion{"boardId", [](const ZoSUpdateElement& element) { return json(element.productId); },
                                     0U};
    return criterion;
}

const Criterion& hwCompatibilityId()
{
    static const Criterion criterion{
        "hwCompatibilityId", [](const ZoSUpdateElement& element) { return json(element.hwCompatibilityId); }, 0U};
    return criterion;
}

const Criterion& swCompatibilityId()
{
    static const Criterion criterion{
        "swCompatibilityId", [](const ZoSUpdateElement& element) { return json(element.swCompatibilityId); }, 0U};
    return criterion;
}

bool isMet(const Criterion& criterion, const EntryProperties& properties, const ZoSUpdateElement& element)
{
    const json* const expected = properties.find(criterion.key);
    return ZoCUpdateAssignment::contains(expected != nullptr ? *expected : criterion.defaultValue,
                                         criterion.elementValue(element));
}

// The first board object for the element's board type, or the entry itself when it has no "boards". Null when the entry
// is not for this type. A later board object of the same type is never looked at.
const json* selectBoard(const json& entry, const ZoSUpdateElement& element)
{
    const json boardType = toJson(element.boardType);
    if (!entry.contains("boards")) {
        return ZoCUpdateAssignment::contains(entry["boardType"], boardType) ? &entry : nullptr;
    }
    for (const json& board : entry["boards"]) {
        if (ZoCUpdateAssignment::contains(board["boardType"], boardType)) {
            return &board;
        }
    }
    return nullptr;
}

bool isForId(const EntryProperties& properties, const ZoSUpdateElement& element)
{
    static const std::string key = "id";
    const json* const id = properties.find(key);
    return id != nullptr && static_cast<unsigned>(*id) == element.id;
}

bool isForLocation(const EntryProperties& properties, const ZoSUpdateElement& element, std::string& targetPath)
{
    static const std::string key = "targetPath";
    if (const json* const path = properties.find(key)) {
        targetPath = std::string(*path);
    }
    const std::string location = ZoCTrellanUpdater::ZoCString2tstring(element.location);
    return location == "*" || location == targetPath;
}

bool isSame(const json& expected, const json& value)
{
    if (value.is_null()) {
        return expected.is_null();
    }
    if (value.is_string()) {
        return expected.is_string() && std::string(value) == std::string(expected);
    }
    return value.is_number_unsigned() && expected.is_number_unsigned() &&
           static_cast<unsigned long long>(value) == static_cast<unsigned long long>(expected);
}

}  // namespace

bool ZoCUpdateAssignment::contains(const json& expected, json value)
{
    if (!expected.is_array()) {
        return isSame(expected, value);
    }
    for (const json& item : expected) {
        if (isSame(item, value)) {
            return true;
        }
    }
    return false;
}

bool ZoCUpdateAssignment::matches(const ZoSUpdateElement& element, const ZoSUpdateFile& file, std::string& targetPath)
{
    const json& entry = file.jsonEntry;
    const json* const board = selectBoard(entry, element);
    if (board == nullptr) {
        return false;
    }
    const EntryProperties properties(*board, entry);
    if (!isMet(boardVariant(), properties, element) || !isMet(boardId(), properties, element)) {
        return false;
    }
    if (element.isFileSystemElement != file.hasTargetPath) {
        return false;
    }
    const bool isForTarget =
        element.isFileSystemElement ? isForLocation(properties, element, targetPath) : isForId(properties, element);
    return isForTarget && isMet(hwCompatibilityId(), properties, element) &&
           isMet(swCompatibilityId(), properties, element);
}
