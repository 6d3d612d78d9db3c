#include "assignment/WaitingElements.h"

#include <iterator>
#include <unordered_set>

#include "assignment/MatchCriteria.h"
#include "assignment/ValueKey.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "base/PlatformText.h"

using namespace ZoNUpdateBase;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

// A target is a board type and what a file is for on it: a number, a path or, as null, any path.
const std::string& anyPath()
{
    static const std::string key = valueKey(nullptr);
    return key;
}

std::string targetOf(const ZoSUpdateElement& element)
{
    if (!element.isFileSystemElement) {
        return boardTypeKey(element) + numberKey(element.id);
    }
    return boardTypeKey(element) + (takesAnyPath(element) ? anyPath() : textKey(allText(element.location)));
}

std::string groupOf(const ZoSUpdateElement& element)
{
    std::string group;
    for (const MatchCriterion& criterion : matchCriteria()) {
        group += criterion.elementKey(element);
    }
    return group;
}

// Asks `test` for each group that a file with these properties accepts, until it is true.
template <class Test>
bool anyAcceptedGroup(const EntryProperties& properties, Test test, const std::string& beginning = {},
                      std::size_t criterion = 0)
{
    if (criterion == matchCriteria().size()) {
        return test(beginning);
    }
    return anyValue(properties.expected(matchCriteria()[criterion]), [&](const json& value) {
        return anyAcceptedGroup(properties, test, beginning + valueKey(value), criterion + 1);
    });
}

// True when it is less work to ask each of `groups` groups whether the file fits than to look for each that it accepts.
bool isLessWorkToAsk(double groups, const EntryProperties& properties)
{
    constexpr double comparisonsPerLookUp = 4;  // roughly
    double values = 0;
    double acceptedGroups = 1;  // too many, possibly, for an integer
    for (const MatchCriterion& criterion : matchCriteria()) {
        const json& expected = properties.expected(criterion);
        const double count = expected.is_array() ? static_cast<double>(expected.size()) : 1;
        values += count;
        acceptedGroups *= count;
    }
    return groups * values <= acceptedGroups * comparisonsPerLookUp;
}

}  // namespace

WaitingElements::WaitingElements(ZoCUpdateInventory::ElementList& elements)
{
    for (ZoSUpdateElement& element : elements) {
        groupsByTarget[targetOf(element)][groupOf(element)].push_back(&element);
    }
}

WaitingElements::Elements WaitingElements::takeFitting(const ZoSUpdateFile& file)
{
    Elements taken;
    std::unordered_set<std::string> seenTypes;
    const auto takeForTypes = [&](const json& board) {
        anyValue(board["boardType"], [&](const json& type) {
            const std::string boardType = valueKey(type);
            if (seenTypes.insert(boardType).second) {  // only the first board object of a type counts
                takeForBoard(file, board, boardType, taken);
            }
            return false;
        });
    };
    if (!file.jsonEntry.contains("boards")) {
        takeForTypes(file.jsonEntry);
        return taken;
    }
    for (const json& board : file.jsonEntry["boards"]) {
        takeForTypes(board);
    }
    return taken;
}

void WaitingElements::takeForBoard(const ZoSUpdateFile& file, const json& board, const std::string& boardType,
                                   Elements& taken)
{
    const EntryProperties properties(board, file.jsonEntry);
    if (file.hasTargetPath) {
        takeFromTarget(boardType + textKey(properties.targetPath().value_or("")), file, board, taken);
        takeFromTarget(boardType + anyPath(), file, board, taken);
    } else if (const auto id = properties.id()) {
        takeFromTarget(boardType + numberKey(*id), file, board, taken);
    }
}

void WaitingElements::takeFromTarget(const std::string& target, const ZoSUpdateFile& file, const json& board,
                                     Elements& taken)
{
    const auto found = groupsByTarget.find(target);
    if (found == groupsByTarget.end()) {
        return;
    }
    Groups& groups = found->second;
    const auto take = [&](Groups::iterator group) {
        taken.insert(taken.end(), group->second.begin(), group->second.end());
        return groups.erase(group);
    };
    const EntryProperties properties(board, file.jsonEntry);
    if (isLessWorkToAsk(static_cast<double>(groups.size()), properties)) {
        for (auto group = groups.begin(); group != groups.end();) {
            std::string targetPath;
            const bool fits = ZoCUpdateAssignment::matchesBoard(*group->second.front(), file, board, targetPath);
            group = fits ? take(group) : std::next(group);
        }
    } else {
        anyAcceptedGroup(properties, [&](const std::string& key) {
            if (const auto group = groups.find(key); group != groups.end()) {
                take(group);
            }
            return groups.empty();
        });
    }
    if (groups.empty()) {
        groupsByTarget.erase(found);
    }
}

}  // namespace ZoNUpdateAssignment
