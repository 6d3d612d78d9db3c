// Whether an update file is meant for an update element.
#include "assignment/MatchCriteria.h"
#include "assignment/ZoCUpdateAssignment.h"

using namespace ZoNUpdateAssignment;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

bool ZoCUpdateAssignment::contains(const json& expected, json value)
{
    const std::optional<MatchValue> sought = matchValueOf(value);
    return sought && anyStated(expected, StatedAs::list, [&](const MatchValue& stated) { return stated == *sought; });
}

bool ZoCUpdateAssignment::matches(const ZoSUpdateElement& element, const ZoSUpdateFile& file, std::string& targetPath)
{
    const json* const board = decidingBoard(file, *matchCriteria[MatchCriterion::boardType].actual(element));
    if (board == nullptr) {
        return false;
    }
    const json pathSoFar(targetPath);
    const Requirements requirements(*board, file, pathSoFar);
    const std::size_t met = countMet(requirements, element);
    if (element.isFileSystemElement && met >= MatchCriterion::targetPath) {
        targetPath = std::string(*requirements.expected(matchCriteria[MatchCriterion::targetPath]));
    }
    return met == MatchCriterion::count;
}
