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

void forEachBoardObject(const ZoSUpdateFile& file, const std::function<void(BoardObject&)>& action)
{
    DecidingBoards decisions = decidingBoards(file);
    std::int32_t position = file.jsonEntry.contains("boards") ? 0 : -1;
    findBoard(file, [&](const json& board) {
        BoardObject object{&board, position++, takeTypes(board, decisions)};
        action(object);
        return false;
    });
}

std::vector<BoardObject> boardObjectsOf(const ZoSUpdateFile& file)
{
    std::vector<BoardObject> objects;
    forEachBoardObject(file, [&](BoardObject& board) { objects.push_back(std::move(board)); });
    return objects;
}

}  // namespace ZoNUpdateInspection
