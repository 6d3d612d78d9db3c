#include "inspection/FileKeys.h"

#include "assignment/MatchCriteria.h"
#include "inspection/BoardObjects.h"

using namespace ZoNUpdateAssignment;
using ZoNJson::json;
using ZoNTrellanInspector::ZoTFileKeys;

namespace ZoNUpdateInspection {

FileKeys::FileKeys(const ZoNUpdateArchive::ZoSUpdateFile& file) : file(file), boards(boardObjectsOf(this->file)) {}

FileKeys::~FileKeys() = default;

std::size_t FileKeys::size() const
{
    return boards.size();
}

ZoTFileKeys FileKeys::at(std::size_t number) const
{
    const json pathOtherwise(targetPathOtherwise);
    const BoardObject& board = boards[number];
    const Requirements requirements(*board.json, file, pathOtherwise);
    const auto expected = [&](MatchCriterion::Index criterion) {
        const json* const value = requirements.expected(matchCriteria[criterion]);
        return value != nullptr ? value->dump() : std::string();
    };
    ZoTFileKeys keys{};
    keys.board = board.position;
    keys.decidesFor = board.decidesFor;
    keys.boardType = expected(MatchCriterion::boardType);
    keys.boardVariant = expected(MatchCriterion::boardVariant);
    keys.boardId = expected(MatchCriterion::boardId);
    keys.hwCompatibilityId = expected(MatchCriterion::hwCompatibilityId);
    keys.swCompatibilityId = expected(MatchCriterion::swCompatibilityId);
    keys.isFile = file.hasTargetPath;
    if (keys.isFile) {
        keys.targetPath = expected(MatchCriterion::targetPath);
    } else {
        keys.id = expected(MatchCriterion::id);
    }
    return keys;
}

}  // namespace ZoNUpdateInspection
