// Elements that have the same of everything that a file may ask are one group, so they share one answer. The groups of
// a board type and id, or target path, are a target. A file asks each group of the targets that it is for, or looks up
// each combination of values that it accepts, as long as either are few. Where both are many, it waits until the end.
#include "assignment/FirstFits.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "assignment/ListSearch.h"
#include "assignment/MatchCriteria.h"
#include "assignment/MatchNumbers.h"

using namespace ZoNUpdateBase;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

// A file has one value of each of these for an element, if only because the board object is found by the board type.
constexpr std::array targetCriteria{MatchCriterion::boardType, MatchCriterion::kind, MatchCriterion::id,
                                    MatchCriterion::targetPath};

static_assert(targetCriteria.size() + listedCriteria.size() == MatchCriterion::count);
static_assert(listedCriteria.size() == listedProperties);

using Concern = std::uint32_t;  // a bit for each of these criteria that concerns an element
using TargetRow = std::array<Number, targetCriteria.size()>;  // 0 for what does not concern it

using Position = std::uint32_t;
constexpr Position noGroup = 0xFFFFFFFF;

struct Target {
    Concern concern;
    TargetRow numbers;
    Position firstOpen = noGroup;  // of the groups that have no file, each of which tells the next
    std::uint32_t openCount = 0;
};

struct Group {
    Position target;
    NumberRow listed;
    Position nextOpen;
    std::optional<std::uint32_t> file;  // the first that fits, of those that were tried
};

// Of a target by its concern, and of a group by its target.
template <std::size_t size>
std::uint64_t hashOf(std::uint32_t first, const std::array<Number, size>& numbers)
{
    std::uint64_t hash = combinedHash(0, first);
    for (const Number number : numbers) {
        hash = combinedHash(hash, number);
    }
    return hash;
}

class FirstFits {
public:
    explicit FirstFits(const ZoCUpdateInventory::ElementList& elements);

    // Files must be added in the archive's order.
    void add(const ZoSUpdateFile& file, std::uint32_t index);

    // After all files were added.
    std::vector<std::optional<std::uint32_t>> filesOfElements();

private:
    struct WaitingFile {
        Position target;
        std::uint32_t index;
        Lists lists;
    };

    void addElement(const ZoSUpdateElement& element);
    Position targetWith(Concern concern, const TargetRow& numbers);
    std::optional<Position> findTarget(Concern concern, const TargetRow& numbers) const;
    Position groupWith(Position target, const NumberRow& listed);
    std::optional<Position> findGroup(Position target, const NumberRow& listed) const;
    void addBoard(const Requirements& requirements, std::span<const Number> boardTypes, std::uint32_t index);
    bool setTarget(TargetRow& numbers, const Requirements& requirements, Concern concern) const;
    void addToTarget(Position target, const Lists& lists, std::uint32_t index);
    void askGroups(Target& target, const Lists& lists, std::uint32_t index);
    void lookUp(Position target, NumberRow& listed, const Lists& lists, std::uint32_t index, std::size_t property = 0);
    bool accepts(const Lists& lists, const NumberRow& listed) const;
    void give(Group& group, std::uint32_t index);
    void decideForWaitingFiles();
    void decide(ListSearch& search, std::span<const Position> targetGroups, std::span<const WaitingFile> files);

    const json pathOtherwise{targetPathOtherwise};
    Numberings numberings;
    AcceptedNumbers accepted{numberings};
    std::vector<Target> targets;
    PositionIndex targetIndex;
    std::vector<Group> groups;
    PositionIndex groupIndex;
    std::vector<Position> groupOfElement;
    std::vector<Concern> concerns;  // all that there are
    std::vector<WaitingFile> waiting;
    bool isWaiting = false;                       // the file that is being added
    std::vector<std::uint32_t> latestFileOfType;  // by number of the board type: the position behind it, 0: none
    std::vector<Number> boardTypes;               // for which a board object decides
};

FirstFits::FirstFits(const ZoCUpdateInventory::ElementList& elements)
{
    groupOfElement.reserve(elements.size());
    for (const ZoSUpdateElement& element : elements) {
        addElement(element);
    }
    latestFileOfType.resize(numberings.end(MatchCriterion::boardType));
}

void FirstFits::addElement(const ZoSUpdateElement& element)
{
    Concern concern = 0;
    TargetRow numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (auto value = matchCriteria[targetCriteria[i]].actual(element)) {
            concern |= 1U << i;
            numbers[i] = numberings.add(targetCriteria[i], *std::move(value));
        }
    }
    NumberRow listed;
    std::transform(listedCriteria.begin(), listedCriteria.end(), listed.begin(), [&](std::size_t criterion) {
        return numberings.add(criterion, *matchCriteria[criterion].actual(element));
    });
    groupOfElement.push_back(groupWith(targetWith(concern, numbers), listed));
}

Position FirstFits::targetWith(Concern concern, const TargetRow& numbers)
{
    if (const auto found = findTarget(concern, numbers)) {
        return *found;
    }
    const auto position = static_cast<Position>(targets.size());
    targetIndex.add(hashOf(concern, numbers), position);
    targets.push_back({concern, numbers});
    if (std::find(concerns.begin(), concerns.end(), concern) == concerns.end()) {
        concerns.push_back(concern);
    }
    return position;
}

std::optional<Position> FirstFits::findTarget(Concern concern, const TargetRow& numbers) const
{
    return targetIndex.find(hashOf(concern, numbers), [&](Position at) {
        return targets[at].concern == concern && targets[at].numbers == numbers;
    });
}

Position FirstFits::groupWith(Position position, const NumberRow& listed)
{
    Target& target = targets[position];
    if (const auto found = target.openCount != 0 ? findGroup(position, listed) : std::nullopt) {
        return *found;
    }
    const auto group = static_cast<Position>(groups.size());
    groupIndex.add(hashOf(position, listed), group);
    groups.push_back({position, listed, target.firstOpen, std::nullopt});
    target.firstOpen = group;
    ++target.openCount;
    return group;
}

std::optional<Position> FirstFits::findGroup(Position target, const NumberRow& listed) const
{
    return groupIndex.find(hashOf(target, listed),
                           [&](Position at) { return groups[at].target == target && groups[at].listed == listed; });
}

void FirstFits::add(const ZoSUpdateFile& file, std::uint32_t index)
{
    accepted.beginFile();
    isWaiting = false;
    const Requirements entry(file.jsonEntry, file, pathOtherwise);
    bool isShared = false;
    findBoard(file, [&](const json& board) {
        boardTypes.clear();
        anyBoardType(board, [&](const MatchValue& type) {
            const auto number = numberings.find(MatchCriterion::boardType, type);
            if (number && std::exchange(latestFileOfType[*number], index + 1) != index + 1) {
                boardTypes.push_back(*number);
            }
            return false;
        });
        if (boardTypes.empty()) {
            return false;
        }
        if (!isShared && &board != &file.jsonEntry) {
            accepted.share(entry);
            isShared = true;
        }
        addBoard(Requirements(board, file, pathOtherwise), boardTypes, index);
        return false;
    });
    if (!isWaiting) {
        accepted.dropFile();
    }
}

void FirstFits::addBoard(const Requirements& requirements, std::span<const Number> types, std::uint32_t index)
{
    std::optional<Lists> lists;  // read when they are needed
    for (const Concern concern : concerns) {
        TargetRow numbers{};
        if (!setTarget(numbers, requirements, concern)) {
            continue;
        }
        for (const Number type : types) {
            numbers.front() = type;
            const auto target = findTarget(concern, numbers);
            if (target && targets[*target].openCount != 0) {
                lists = lists ? lists : accepted.listsOf(requirements);
                addToTarget(*target, *lists, index);
            }
        }
    }
}

// All but the board type, which is the first. False when no element is in it.
bool FirstFits::setTarget(TargetRow& numbers, const Requirements& requirements, Concern concern) const
{
    for (std::size_t i = 1; i < numbers.size(); ++i) {
        if ((concern >> i & 1) != 0) {
            const auto number = accepted.numberOf(targetCriteria[i], requirements);
            if (!number) {
                return false;
            }
            numbers[i] = *number;
        }
    }
    return true;
}

void FirstFits::addToTarget(Position position, const Lists& lists, std::uint32_t index)
{
    Target& target = targets[position];
    double combinations = 1;  // too many, possibly, for an integer
    for (const List& list : lists) {
        combinations *= static_cast<double>(list.size);
    }
    constexpr double few = 32;  // to ask or to look up these is no more work than to wait
    if (std::min<double>(combinations, target.openCount) > few) {
        waiting.push_back({position, index, lists});
        isWaiting = true;
    } else if (target.openCount <= combinations) {
        askGroups(target, lists, index);
    } else {
        NumberRow listed;
        lookUp(position, listed, lists, index);
    }
}

// Forgets that groups were open that are so no more.
void FirstFits::askGroups(Target& target, const Lists& lists, std::uint32_t index)
{
    for (Position* place = &target.firstOpen; *place != noGroup;) {
        Group& group = groups[*place];
        if (!group.file && accepts(lists, group.listed)) {
            give(group, index);
        }
        if (group.file) {
            *place = group.nextOpen;
        } else {
            place = &group.nextOpen;
        }
    }
}

bool FirstFits::accepts(const Lists& lists, const NumberRow& listed) const
{
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const auto numbers = accepted.numbersOf(lists[i]);
        if (!std::binary_search(numbers.begin(), numbers.end(), listed[i])) {
            return false;
        }
    }
    return true;
}

void FirstFits::lookUp(Position target, NumberRow& listed, const Lists& lists, std::uint32_t index,
                       std::size_t property)
{
    if (property < lists.size()) {
        for (const Number number : accepted.numbersOf(lists[property])) {
            listed[property] = number;
            lookUp(target, listed, lists, index, property + 1);
        }
    } else if (const auto group = findGroup(target, listed); group && !groups[*group].file) {
        give(groups[*group], index);
    }
}

void FirstFits::give(Group& group, std::uint32_t index)
{
    group.file = index;
    --targets[group.target].openCount;
}

std::vector<std::optional<std::uint32_t>> FirstFits::filesOfElements()
{
    decideForWaitingFiles();
    std::vector<std::optional<std::uint32_t>> files;
    files.reserve(groupOfElement.size());
    for (const Position group : groupOfElement) {
        files.push_back(groups[group].file);
    }
    return files;
}

// All groups of their targets are asked again: what waits comes before files that were asked at once.
void FirstFits::decideForWaitingFiles()
{
    if (waiting.empty()) {
        return;
    }
    std::vector<std::vector<Position>> groupsOfTarget(targets.size());
    for (Position group = 0; group < groups.size(); ++group) {
        groupsOfTarget[groups[group].target].push_back(group);
    }
    NumberRow ends{};
    std::transform(listedCriteria.begin(), listedCriteria.end(), ends.begin(),
                   [&](std::size_t criterion) { return numberings.end(criterion); });
    ListSearch search(ends);
    std::stable_sort(waiting.begin(), waiting.end(),
                     [](const WaitingFile& a, const WaitingFile& b) { return a.target < b.target; });
    for (auto first = waiting.begin(); first != waiting.end();) {
        const auto end =
            std::find_if(first, waiting.end(), [&](const WaitingFile& file) { return file.target != first->target; });
        decide(search, groupsOfTarget[first->target], {first, end});
        first = end;
    }
}

void FirstFits::decide(ListSearch& search, std::span<const Position> targetGroups, std::span<const WaitingFile> files)
{
    std::vector<ListOffer> offers;
    for (const WaitingFile& file : files) {
        ListOffer& offer = offers.emplace_back(ListOffer{file.index, {}});
        std::transform(file.lists.begin(), file.lists.end(), offer.accepted.begin(),
                       [&](const List& list) { return accepted.numbersOf(list); });
    }
    std::vector<SoughtRow> rows;
    rows.reserve(targetGroups.size());
    for (const Position group : targetGroups) {
        rows.push_back({groups[group].listed, groups[group].file});
    }
    search.search(rows, offers);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        groups[targetGroups[i]].file = rows[i].position;
    }
}

}  // namespace

std::vector<std::optional<std::uint32_t>> firstFits(const ZoCUpdateInventory::ElementList& elements,
                                                    const std::vector<ZoSUpdateFile>& files)
{
    FirstFits fits(elements);
    for (std::uint32_t index = 0; index < files.size(); ++index) {
        fits.add(files[index], index);
    }
    return fits.filesOfElements();
}

}  // namespace ZoNUpdateAssignment
