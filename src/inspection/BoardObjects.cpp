#include "inspection/BoardObjects.h"

#include "assignment/MatchCriteria.h"

using namespace ZoNUpdateAssignment;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace ZoNUpdateInspection {
namespace {

// Takes the board types for which `board` decides out of `decisions`.
std::vector<std::string> takeTypes(const json& board, DecidingBoards& decisions)
{
    std::vector<std::string> types;
    const MatchCriterion& criterion = matchCriteria[MatchCriterion::boardType];
    anyStated(board[criterion.property], criterion.form, [&](const MatchValue& type) {
        const auto decision = decisions.find(type);
        if (decision != decisions.end() && decision->second == &board && std::holds_alternative<std::string>(type)) {
            types.push_back(std::get<std::string>(type));
            decisions.erase(decision);
        }
        return false;
    });
    return types;
}

}  // namespace

std::vector<BoardObject> boardObjectsOf(const ZoSUpdateFile& file)
{
    DecidingBoards decisions = decidingBoards(file);
    const json& entry = file.jsonEntry;
    if (!entry.contains("boards")) {
        return {{&entry, -1, takeTypes(entry, decisions)}};
    }
    std::vector<BoardObject> objects;
    for (const json& board : entry["boards"]) {
        objects.push_back({&board, static_cast<std::int32_t>(objects.size()), takeTypes(board, decisions)});
    }
    return objects;
}

}  // namespace ZoNUpdateInspection
