// The values by which the criteria let a board pass, as sets that are intersected.
#include "inspection/Demands.h"

#include <algorithm>
#include <limits>

#include "inspection/BoardObjects.h"
#include "inspection/SortedLists.h"

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

}  // namespace

std::vector<Demand> demandsOf(const ZoSUpdateFile& file)
{
    const json pathOtherwise(targetPathOtherwise);
    std::vector<Demand> demands;
    for (BoardObject& board : boardObjectsOf(file)) {
        if (board.decidesFor.empty()) {
            continue;
        }
        const Requirements requirements(*board.json, file, pathOtherwise);
        Demand& demand = demands.emplace_back();
        demand.file = &file;
        demand.object = board.json;
        demand.board = board.position;
        demand.boardTypes = std::move(board.decidesFor);
        if (file.hasTargetPath) {
            demand.path = std::string(*requirements.expected(matchCriteria[MatchCriterion::targetPath]));
        } else if (const json* const id = requirements.expected(matchCriteria[MatchCriterion::id])) {
            demand.id = static_cast<unsigned>(*id);
        }
        demand.pathBoard = board.json->contains("targetPath") ? board.position : -1;
        for (std::size_t i = 0; i < listedCriteria.size(); ++i) {
            demand.accepted[i] = acceptedValues(matchCriteria[listedCriteria[i]], requirements);
        }
    }
    return demands;
}

bool haveCommonBoard(const Demand& a, const Demand& b)
{
    return std::equal(a.accepted.begin(), a.accepted.end(), b.accepted.begin(), b.accepted.end(),
                      intersect<MatchValue>);
}

}  // namespace ZoNUpdateInspection
