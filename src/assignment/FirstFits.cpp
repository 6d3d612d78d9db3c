// Elements of a group share one answer. A file asks each group of the targets that it is for, or looks up each
// combination of values that it accepts, as long as either are few. Where both are many, it waits until the end.
#include "assignment/FirstFits.h"

#include <algorithm>
#include <span>
#include <utility>

#include "assignment/ElementGroups.h"
#include "assignment/ListSearch.h"
#include "assignment/MatchCriteria.h"
#include "assignment/MatchNumbers.h"

using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

class FirstFits {
public:
    explicit FirstFits(std::span<const ZoSUpdateElement* const> allElements) : elements(allElements, numberings)
    {
        latestFileOfType.resize(numberings.end(MatchCriterion::boardType));
    }

    // Files must be added in the archive's order.
    void add(const ZoSUpdateFile& file, std::uint32_t index);

    // After all files were added.
    std::vector<std::optional<std::uint32_t>> filesOfElements();

private:
    // A target that a board object of a file, or the entry itself, may be for.
    struct Offer {
        const ZoSUpdateFile* file;
        const json* board;
        std::uint32_t index;  // of the file
        Concern concern;
        TargetRow target;
    };

    struct WaitingFile {
        Position target;
        std::uint32_t index;
        Lists lists;
    };

    void addBoard(const ZoSUpdateFile& file, const json& board, std::uint32_t index);
    bool setTarget(TargetRow& numbers, const Requirements& requirements, Concern concern) const;
    void tryOffers();
    void readLists(const Offer& offer);
    void addToTarget(Position target, const Lists& lists, std::uint32_t index);
    void askGroups(Target& target, const Lists& lists, std::uint32_t index);
    void lookUp(Position target, NumberRow& listed, const Lists& lists, std::uint32_t index, std::size_t property = 0);
    bool accepts(const Lists& lists, const NumberRow& listed) const;
    void give(Group& group, std::uint32_t index);
    void decideForWaitingFiles();
    void decide(ListSearch& search, std::span<const Position> targetGroups, std::span<const WaitingFile> files);

    const json pathOtherwise{targetPathOtherwise};
    Numberings numberings;
    ElementGroups elements;
    std::vector<Target>& targets = elements.getTargets();
    std::vector<Group>& groups = elements.getGroups();
    AcceptedNumbers accepted{numberings};
    std::vector<WaitingFile> waiting;
    std::vector<Offer> offers;                   // that have not been tried yet
    const ZoSUpdateFile* fileOfLists = nullptr;  // the lists are those of this file's board object; null: none yet
    const json* boardOfLists = nullptr;
    Lists listsOfBoard;
    bool isWaiting = false;                       // that file
    std::vector<std::uint32_t> latestFileOfType;  // by number of the board type: the position behind it, 0: none
    std::vector<Number> boardTypes;               // for which a board object decides
};

void FirstFits::add(const ZoSUpdateFile& file, std::uint32_t index)
{
    findBoard(file, [&](const json& board) {
        boardTypes.clear();
        anyBoardType(board, [&](const MatchValue& type) {
            const auto number = numberings.find(MatchCriterion::boardType, type);
            if (number && std::exchange(latestFileOfType[*number], index + 1) != index + 1) {
                boardTypes.push_back(*number);
            }
            return false;
        });
        if (!boardTypes.empty()) {
            addBoard(file, board, index);
        }
        return false;
    });
}

void FirstFits::addBoard(const ZoSUpdateFile& file, const json& board, std::uint32_t index)
{
    const Requirements requirements(board, file, pathOtherwise);
    for (const Concern concern : elements.getConcerns()) {
        TargetRow numbers{};
        if (!setTarget(numbers, requirements, concern)) {
            continue;
        }
        for (const Number type : boardTypes) {
            numbers.front() = type;
            elements.fetchTargetAhead(concern, numbers);
            offers.push_back({&file, &board, index, concern, numbers});
            if (offers.size() == atOnce) {
                tryOffers();
            }
        }
    }
}

void FirstFits::tryOffers()
{
    for (const Offer& offer : offers) {
        const auto target = elements.findTarget(offer.concern, offer.target);
        if (target && targets[*target].openCount != 0) {
            readLists(offer);
            addToTarget(*target, listsOfBoard, offer.index);
        }
    }
    offers.clear();
}

// Those of the board object, once for all its offers, which come one behind the other, as those of a file do.
void FirstFits::readLists(const Offer& offer)
{
    if (fileOfLists != offer.file) {
        if (!isWaiting) {
            accepted.dropFile();
        }
        accepted.beginFile();
        isWaiting = false;
        if (offer.board != &offer.file->jsonEntry) {
            accepted.share(Requirements(offer.file->jsonEntry, *offer.file, pathOtherwise));
        }
    }
    if (fileOfLists != offer.file || boardOfLists != offer.board) {
        listsOfBoard = accepted.listsOf(Requirements(*offer.board, *offer.file, pathOtherwise));
    }
    fileOfLists = offer.file;
    boardOfLists = offer.board;
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
    } else if (const auto group = elements.findGroup(target, listed); group && !groups[*group].file) {
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
    tryOffers();
    decideForWaitingFiles();
    std::vector<std::optional<std::uint32_t>> files;
    files.reserve(elements.getGroupsOfElements().size());
    for (const Position group : elements.getGroupsOfElements()) {
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
    std::vector<ListOffer> listOffers;
    for (const WaitingFile& file : files) {
        ListOffer& offer = listOffers.emplace_back(ListOffer{file.index, {}});
        std::transform(file.lists.begin(), file.lists.end(), offer.accepted.begin(),
                       [&](const List& list) { return accepted.numbersOf(list); });
    }
    std::vector<SoughtRow> rows;
    rows.reserve(targetGroups.size());
    for (const Position group : targetGroups) {
        rows.push_back({groups[group].listed, groups[group].file});
    }
    search.search(rows, listOffers);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        groups[targetGroups[i]].file = rows[i].position;
    }
}

}  // namespace

std::vector<std::optional<std::uint32_t>> firstFits(std::span<const ZoSUpdateElement* const> elements,
                                                    const std::vector<ZoSUpdateFile>& files)
{
    FirstFits fits(elements);
    for (std::uint32_t index = 0; index < files.size(); ++index) {
        fits.add(files[index], index);
    }
    return fits.filesOfElements();
}

}  // namespace ZoNUpdateAssignment
