// The values by which the criteria let a board pass, as sets that are intersected.
#include "inspection/Placements.h"

#include <algorithm>
#include <limits>

#include "inspection/BoardObjects.h"

using namespace ZoNUpdateAssignment;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace ZoNUpdateInspection {
namespace {

// A board has numbers of 32 bits, and what it does not have is null and no empty text.
bool canBeHad(const MatchValue& value)
{
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return !text->empty();
    }
    const auto* const number = std::get_if<unsigned long long>(&value);
    return number == nullptr || *number <= std::numeric_limits<std::uint32_t>::max();
}

std::vector<MatchValue> acceptedValues(const MatchCriterion& criterion, const Requirements& requirements)
{
    std::vector<MatchValue> values;
    if (const json* const expected = requirements.expected(criterion)) {
        anyStated(*expected, criterion.form, [&](MatchValue value) {
            if (canBeHad(value)) {
                values.push_back(std::move(value));
            }
            return false;
        });
    }
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

bool intersect(const std::vector<MatchValue>& a, const std::vector<MatchValue>& b)
{
    for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end();) {
        if (*i == *j) {
            return true;
        }
        ++(*i < *j ? i : j);
    }
    return false;
}

}  // namespace

std::vector<Placement> placementsOf(const ZoSUpdateFile& file)
{
    if (!file.hasTargetPath) {
        return {};
    }
    const json pathOtherwise(targetPathOtherwise);
    std::vector<Placement> placements;
    for (BoardObject& board : boardObjectsOf(file)) {
        if (board.decidesFor.empty()) {
            continue;
        }
        const Requirements requirements(*board.json, file, pathOtherwise);
        Placement& placement = placements.emplace_back();
        placement.file = &file;
        placement.pathBoard = board.json->contains("targetPath") ? board.position : -1;
        placement.path = std::string(*requirements.expected(matchCriteria[MatchCriterion::targetPath]));
        placement.boardTypes = std::move(board.decidesFor);
        for (const MatchCriterion::Index criterion :
             {MatchCriterion::boardVariant, MatchCriterion::boardId, MatchCriterion::hwCompatibilityId,
              MatchCriterion::swCompatibilityId}) {
            placement.accepted.push_back(acceptedValues(matchCriteria[criterion], requirements));
        }
    }
    return placements;
}

bool haveCommonBoard(const Placement& a, const Placement& b)
{
    return std::equal(a.accepted.begin(), a.accepted.end(), b.accepted.begin(), b.accepted.end(), intersect);
}

}  // namespace ZoNUpdateInspection
