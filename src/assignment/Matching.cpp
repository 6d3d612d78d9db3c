// Whether an update file is meant for an update element.
#include "assignment/MatchCriteria.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::criteriaBeforeTarget;
using ZoNUpdateAssignment::EntryProperties;
using ZoNUpdateAssignment::matchCriteria;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

using ZoNJson::json;

bool areMet(std::size_t first, std::size_t last, const EntryProperties& properties, const ZoSUpdateElement& element)
{
    for (std::size_t i = first; i < last; ++i) {
        const auto& criterion = matchCriteria()[i];
        if (!ZoCUpdateAssignment::contains(properties.expected(criterion), criterion.elementValue(element))) {
            return false;
        }
    }
    return true;
}

// The first board object for the element's board type, or the entry itself when it has no "boards". Null when the entry
// is not for this type. A later board object of the same type is never looked at.
const json* selectBoard(const json& entry, const ZoSUpdateElement& element)
{
    const json boardType(ZoCTrellanUpdater::ZoCString2tstring(element.boardType));
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
    const json* const id = properties.id();
    return id != nullptr && static_cast<unsigned>(*id) == element.id;
}

bool isForLocation(const EntryProperties& properties, const ZoSUpdateElement& element, std::string& targetPath)
{
    if (const json* const path = properties.targetPath()) {
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
    const json* const board = selectBoard(file.jsonEntry, element);
    return board != nullptr && matchesBoard(element, file, *board, targetPath);
}

bool ZoCUpdateAssignment::matchesBoard(const ZoSUpdateElement& element, const ZoSUpdateFile& file, const json& board,
                                       std::string& targetPath)
{
    const EntryProperties properties(board, file.jsonEntry);
    if (!areMet(0, criteriaBeforeTarget, properties, element) || element.isFileSystemElement != file.hasTargetPath) {
        return false;
    }
    const bool isForTarget =
        element.isFileSystemElement ? isForLocation(properties, element, targetPath) : isForId(properties, element);
    return isForTarget && areMet(criteriaBeforeTarget, matchCriteria().size(), properties, element);
}
