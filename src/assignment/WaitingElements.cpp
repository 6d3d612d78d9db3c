#include "assignment/WaitingElements.h"

#include <array>
#include <iterator>
#include <unordered_set>

#include "assignment/MatchCriteria.h"
#include "assignment/ZoCUpdateAssignment.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

// A target is a board type and what a file is for on it. The parts of a key are set apart by a NUL, which no text of an
// element holds: a file's text that holds one is in no element's key.
std::string targetForId(const std::string& boardType, std::uint32_t id)
{
    return boardType + '\0' + "id " + std::to_string(id);
}

std::string targetForPath(const std::string& boardType, const std::string& targetPath)
{
    return boardType + '\0' + "path " + targetPath;
}

std::string targetForAnyPath(const std::string& boardType)
{
    return boardType + '\0' + "any path";
}

std::string targetOf(const ZoSUpdateElement& element)
{
    const std::string boardType = ZoCTrellanUpdater::ZoCString2tstring(element.boardType);
    if (!element.isFileSystemElement) {
        return targetForId(boardType, element.id);
    }
    const std::string location = ZoCTrellanUpdater::ZoCString2tstring(element.location);
    return location == "*" ? targetForAnyPath(boardType) : targetForPath(boardType, location);
}

// The value of a criterion as a part of a key; empty when it is of a type that no element has.
std::string keyPart(const json& value)
{
    const std::string separator(1, '\0');
    if (value.is_null()) {
        return separator + "null";
    }
    if (value.is_string()) {
        return separator + "text " + std::string(value);
    }
    return value.is_number_unsigned() ? separator + std::to_string(static_cast<unsigned long long>(value)) : "";
}

std::string groupOf(const ZoSUpdateElement& element)
{
    std::string key;
    for (const MatchCriterion& criterion : matchCriteria()) {
        key += keyPart(criterion.elementValue(element));
    }
    return key;
}

// What a file accepts, for each criterion: the parts of the keys of the groups that it fits.
class AcceptedGroups {
public:
    explicit AcceptedGroups(const EntryProperties& properties)
    {
        for (std::size_t i = 0; i < parts.size(); ++i) {
            parts[i] = acceptedParts(properties.expected(matchCriteria()[i]));
        }
    }

    // True when there are more of them than `limit`.
    bool areMoreThan(std::size_t limit) const
    {
        std::size_t count = 1;
        for (const auto& accepted : parts) {
            count *= accepted.size();
            if (count > limit) {
                return true;
            }
        }
        return false;
    }

    // Calls `visit` with the key of each of them.
    template <class Visitor>
    void forEach(Visitor visit, const std::string& beginning = {}, std::size_t criterion = 0) const
    {
        if (criterion == parts.size()) {
            visit(beginning);
            return;
        }
        for (const std::string& part : parts[criterion]) {
            forEach(visit, beginning + part, criterion + 1);
        }
    }

private:
    static std::unordered_set<std::string> acceptedParts(const json& expected)
    {
        std::unordered_set<std::string> accepted;
        if (!expected.is_array()) {
            accepted.insert(keyPart(expected));
        }
        for (const json& value : expected) {
            accepted.insert(keyPart(value));
        }
        accepted.erase("");
        return accepted;
    }

    std::array<std::unordered_set<std::string>, 4> parts;
};

std::vector<std::string> boardTypesOf(const json& board)
{
    const json& boardType = board["boardType"];
    if (boardType.is_string()) {
        return {std::string(boardType)};
    }
    std::vector<std::string> types;
    for (const json& type : boardType) {
        if (type.is_string()) {
            types.emplace_back(type);
        }
    }
    return types;
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
        for (const std::string& type : boardTypesOf(board)) {
            if (seenTypes.insert(type).second) {  // only the first board object of a type counts
                takeForBoard(file, board, type, taken);
            }
        }
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
        const json* const path = properties.targetPath();
        takeFromTarget(targetForPath(boardType, path != nullptr ? std::string(*path) : ""), file, board, taken);
        takeFromTarget(targetForAnyPath(boardType), file, board, taken);
    } else if (const json* const id = properties.id()) {
        takeFromTarget(targetForId(boardType, static_cast<unsigned>(*id)), file, board, taken);
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
    // Whichever is less: look for each group that the file accepts, or ask each group whether the file fits.
    const AcceptedGroups accepted(EntryProperties(board, file.jsonEntry));
    if (!accepted.areMoreThan(groups.size())) {
        accepted.forEach([&](const std::string& key) {
            if (const auto group = groups.find(key); group != groups.end()) {
                take(group);
            }
        });
    } else {
        for (auto group = groups.begin(); group != groups.end();) {
            std::string targetPath;
            const bool fits = ZoCUpdateAssignment::matchesBoard(*group->second.front(), file, board, targetPath);
            group = fits ? take(group) : std::next(group);
        }
    }
    if (groups.empty()) {
        groupsByTarget.erase(found);
    }
}

}  // namespace ZoNUpdateAssignment
