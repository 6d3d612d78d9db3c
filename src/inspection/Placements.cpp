// The values by which the criteria let a board pass, as sets that are intersected.
#include "inspection/Placements.h"

#include <algorithm>
#include <limits>

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

class Placing {
public:
    explicit Placing(const ZoSUpdateFile& file) : file(file), boards(decidingBoards(file)) {}

    void addBoard(const json& board, std::int32_t number)
    {
        const Requirements requirements(board, file, pathOtherwise);
        Placement placement{&file,
                            board.contains("targetPath") ? number : -1,
                            std::string(*requirements.expected(matchCriteria[MatchCriterion::targetPath])),
                            takeTypes(board),
                            {}};
        if (placement.boardTypes.empty()) {
            return;
        }
        for (const MatchCriterion::Index criterion :
             {MatchCriterion::boardVariant, MatchCriterion::boardId, MatchCriterion::hwCompatibilityId,
              MatchCriterion::swCompatibilityId}) {
            placement.accepted.push_back(acceptedValues(matchCriteria[criterion], requirements));
        }
        placements.push_back(std::move(placement));
    }

    std::vector<Placement> placements;

private:
    // The types for which the board object decides, in the order in which it states them.
    std::vector<std::string> takeTypes(const json& board)
    {
        std::vector<std::string> types;
        anyStated(board["boardType"], StatedAs::list, [&](const MatchValue& type) {
            const auto decision = boards.find(type);
            if (decision != boards.end() && decision->second == &board && std::holds_alternative<std::string>(type)) {
                types.push_back(std::get<std::string>(type));
                boards.erase(decision);
            }
            return false;
        });
        return types;
    }

    const ZoSUpdateFile& file;
    const json pathOtherwise{targetPathOtherwise};
    DecidingBoards boards;  // of the types that were not taken yet
};

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
    Placing placing(file);
    if (!file.jsonEntry.contains("boards")) {
        placing.addBoard(file.jsonEntry, -1);
    }
    std::int32_t number = 0;
    for (const json& board : file.jsonEntry["boards"]) {
        placing.addBoard(board, number++);
    }
    return std::move(placing.placements);
}

bool haveCommonBoard(const Placement& a, const Placement& b)
{
    return std::equal(a.accepted.begin(), a.accepted.end(), b.accepted.begin(), b.accepted.end(), intersect);
}

}  // namespace ZoNUpdateInspection
