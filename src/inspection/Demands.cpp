// What is asked for, read from the JSON of an entry and its board objects.
#include "inspection/Demands.h"

#include <algorithm>
#include <limits>
#include <utility>

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

Requirements requirementsOf(const ZoSUpdateFile& file, const json& object)
{
    static const json pathOtherwise(targetPathOtherwise);
    return {object, file, pathOtherwise};
}

}  // namespace

void forEachDemand(const ZoSUpdateFile& file, const std::function<void(const Demand&)>& action)
{
    forEachBoardObject(file, [&](BoardObject& board) {
        if (board.decidesFor.empty()) {
            return;
        }
        Demand demand{&file, board.json, std::move(board.decidesFor), std::nullopt, -1};
        if (!file.hasTargetPath) {
            const Requirements requirements = requirementsOf(file, *board.json);
            if (const json* const id = requirements.expected(matchCriteria[MatchCriterion::id])) {
                demand.id = static_cast<unsigned>(*id);
            }
        }
        if (board.json->contains("targetPath")) {
            demand.pathBoard = board.position;
        }
        action(demand);
    });
}

StatedLists statedLists(const ZoSUpdateFile& file, const json& object)
{
    const Requirements requirements = requirementsOf(file, object);
    StatedLists lists;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        lists[i] = requirements.expected(matchCriteria[listedCriteria[i]]);
    }
    return lists;
}

std::string statedPath(const ZoSUpdateFile& file, const json& object)
{
    return std::string(*requirementsOf(file, object).expected(matchCriteria[MatchCriterion::targetPath]));
}

std::vector<MatchValue> acceptedValues(const json* stated)
{
    std::vector<MatchValue> values;
    if (stated != nullptr) {
        values.reserve(stated->size());
        anyStated(*stated, StatedAs::list, [&](MatchValue value) {
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

}  // namespace ZoNUpdateInspection
