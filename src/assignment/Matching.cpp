// Whether an update file is meant for an update element.
#include "assignment/MatchCriteria.h"
#include "assignment/ValueKey.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "base/PlatformText.h"

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::boardTypeKey;
using ZoNUpdateAssignment::criteriaBeforeTarget;
using ZoNUpdateAssignment::EntryProperties;
using ZoNUpdateAssignment::matchCriteria;
using ZoNUpdateAssignment::states;
using ZoNUpdateAssignment::takesAnyPath;
using ZoNUpdateAssignment::valueKey;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

using ZoNJson::json;

bool areMet(std::size_t first, std::size_t last, const EntryProperties& properties, const ZoSUpdateElement& element)
{
    for (std::size_t i = first; i < last; ++i) {
        const auto& criterion = matchCriteria()[i];
        if (!states(properties.expected(criterion), criterion.elementKey(element))) {
            return false;
        }
    }
    return true;
}

// The first board object for the element's board type, or the entry itself when it has no "boards". Null when the entry
// is not for this type. A later board object of the same type is never looked at.
const json* selectBoard(const json& entry, const ZoSUpdateElement& element)
{
    const std::string boardType = boardTypeKey(element);
    if (!entry.contains("boards")) {
        return states(entry["boardType"], boardType) ? &entry : nullptr;
    }
    for (const json& board : entry["boards"]) {
        if (states(board["boardType"], boardType)) {
            return &board;
        }
    }
    return nullptr;
}

bool isForLocation(const EntryProperties& properties, const ZoSUpdateElement& element, std::string& targetPath)
{
    if (auto path = properties.targetPath()) {
        targetPath = *std::move(path);
    }
    return takesAnyPath(element) || allText(element.location) == targetPath;
}

}  // namespace

bool ZoCUpdateAssignment::contains(const json& expected, json value)
{
    return states(expected, valueKey(value));
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
        element.isFileSystemElement ? isForLocation(properties, element, targetPath) : properties.id() == element.id;
    return isForTarget && areMet(criteriaBeforeTarget, matchCriteria().size(), properties, element);
}
