// The rules about what is given to elements, and which board objects decide.
#include <set>

#include "base/QuotedText.h"
#include "inspection/BoardObjects.h"
#include "inspection/Check.h"
#include "inspection/Reachability.h"
#include "inspection/Rules.h"

using ZoNJson::json;
using ZoNTrellanInspector::ZoTFinding;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateBase::inQuotes;

namespace ZoNUpdateInspection {
namespace {

std::string nameOf(const ZoSUpdateFile& file)
{
    return "files[" + std::to_string(file.entry) + "]";
}

// "files[0]", "files[0] and files[2]", "files[0], files[1] and files[2]"
std::string namesOf(const Check::Files& files, const std::vector<std::size_t>& positions)
{
    std::string names;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        names += i == 0 ? "" : i + 1 < positions.size() ? ", " : " and ";
        names += nameOf(*files[positions[i]]);
    }
    return names;
}

void noteTakers(ZoTFinding& finding, const Check::Files& files, const Reach& reach)
{
    for (const std::size_t taker : reach.takers) {
        finding.coveredBy.push_back(files[taker]->entry);
    }
}

void reportUnreachable(Check& check, const ZoSUpdateFile& file, const Reach& reach)
{
    const std::string message =
        reach.takers.empty()
            ? "no element can ever fit this entry: correct what it accepts"
            : namesOf(check.getFiles(), reach.takers) + (reach.takers.size() == 1 ? " takes" : " take") +
                  " every element that this entry fits, and no target will ever be given it: put it before, narrow "
                  "what comes before, or take it away";
    noteTakers(check.report("unreachable", Check::Severity::WARNING, {file, ""}, message), check.getFiles(), reach);
}

std::string describe(const ZoNTrellanInspector::ZoTKeys& keys)
{
    return "board type " + inQuotes(keys.boardType) + ", variant " +
           (keys.hasBoardVariant ? inQuotes(keys.boardVariant) : "null") + ", board id " +
           std::to_string(keys.boardId) + ", id " + std::to_string(keys.id) + ", hardware " +
           std::to_string(keys.hwCompatibilityId) + ", software " + std::to_string(keys.swCompatibilityId);
}

void reportOverlap(Check& check, const ZoSUpdateFile& file, const Reach& reach)
{
    ZoTFinding& finding =
        check.report("overlap", Check::Severity::NOTE, {file, ""},
                     namesOf(check.getFiles(), reach.takers) + (reach.takers.size() == 1 ? " takes" : " take") +
                         " some of the elements that this entry fits, such as " + describe(reach.taken->keys));
    noteTakers(finding, check.getFiles(), reach);
    finding.hasExample = true;
    finding.example = reach.taken->keys;
}

// The board types that an object states, with the place of each.
std::vector<std::pair<std::string, std::string>> statedTypes(const json& object)
{
    const json& stated = object["boardType"];
    if (!stated.is_array()) {
        return {{std::string(stated), "boardType"}};
    }
    std::vector<std::pair<std::string, std::string>> types;
    for (const json& type : stated) {
        types.emplace_back(type, "boardType/" + std::to_string(types.size()));
    }
    return types;
}

void checkBoards(Check& check, const ZoSUpdateFile& file)
{
    std::set<std::string> earlier;
    forEachBoardObject(file, [&](const BoardObject& board) {
        const auto types = statedTypes(*board.json);
        if (board.decidesFor.empty()) {
            check.report("unreachable-board", Check::Severity::WARNING, {file, "", board.position},
                         types.empty() ? "it names no board type, and never decides: name one, or take it away"
                                       : "each of its board types stands in a board object before it, which decides: "
                                         "put both into one, or into two entries");
            return;
        }
        std::set<std::string> reported;
        for (const auto& [type, place] : types) {
            if (earlier.contains(type) && reported.insert(type).second) {
                check.report("unreachable-board", Check::Severity::WARNING, {file, place, board.position},
                             "the board type " + inQuotes(type) +
                                 " stands in a board object before it, which decides: put both into one, or into "
                                 "two entries");
            }
        }
        earlier.insert(board.decidesFor.begin(), board.decidesFor.end());
    });
}

}  // namespace

void checkReach(Check& check)
{
    const Check::Files& files = check.getFiles();
    const std::vector<Reach> reaches = reachOf(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!reaches[i].isReached) {
            reportUnreachable(check, *files[i], reaches[i]);
        } else if (reaches[i].taken) {
            reportOverlap(check, *files[i], reaches[i]);
        }
        if (files[i]->jsonEntry.contains("boards")) {
            checkBoards(check, *files[i]);
        }
    }
}

}  // namespace ZoNUpdateInspection
