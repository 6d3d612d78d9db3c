// Elements that have the same of everything that a file may ask are one group, so they share one answer. A file looks
// up each combination of values that it accepts, as long as these are few. Files that accept more wait until the end,
// by target: board type and id, or target path.
#include "assignment/FirstFits.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <memory_resource>
#include <unordered_map>

#include "assignment/ListSearch.h"
#include "assignment/MatchCriteria.h"

using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

// What stands for a value that elements have for a criterion.
using Number = std::uint32_t;
constexpr Number noNumber = 0;

// A file has one value of each of these for an element, if only because the board object is found by the board type.
constexpr std::array targetCriteria{MatchCriterion::boardType, MatchCriterion::kind, MatchCriterion::id,
                                    MatchCriterion::targetPath};

static_assert(targetCriteria.size() + listedCriteria.size() == MatchCriterion::count);
static_assert(listedCriteria.size() == listedProperties);

using Target = std::array<Number, targetCriteria.size()>;  // noNumber for what does not concern an element

struct Key {
    Target target;
    NumberRow listed;

    bool operator==(const Key&) const = default;
};

struct Hash {
    template <std::size_t size>
    std::size_t operator()(const std::array<Number, size>& numbers, std::uint64_t hash = 0) const
    {
        for (const Number number : numbers) {
            hash = (hash ^ number) * 0x9E3779B97F4A7C15U;
            hash ^= hash >> 32;
        }
        return hash;
    }

    std::size_t operator()(const Key& key) const { return (*this)(key.listed, (*this)(key.target)); }
};

// For each group the first file that fits, of those that were tried.
using Groups = std::pmr::unordered_map<Key, std::optional<std::uint32_t>, Hash>;
using Group = Groups::value_type;

// The numbers of the values that elements have for one criterion.
class Numbering {
public:
    explicit Numbering(std::pmr::memory_resource* memory) : numbers(memory) {}

    Number add(MatchValue value) { return numbers.try_emplace(std::move(value), end()).first->second; }

    // noNumber for a value that was not added.
    Number find(const MatchValue& value) const
    {
        const auto found = numbers.find(value);
        return found != numbers.end() ? found->second : noNumber;
    }

    // All numbers are below this one.
    Number end() const { return static_cast<Number>(numbers.size() + 1); }

private:
    // Not noexcept, for then the map computes it once for each value and not at each step of a search.
    struct Hash {
        std::size_t operator()(const MatchValue& value) const { return std::hash<MatchValue>()(value); }
    };

    std::pmr::unordered_map<MatchValue, Number, Hash> numbers;
};

using Numberings = std::vector<Numbering>;  // one for each criterion

// A part of all the numbers that files accept.
struct List {
    std::size_t begin = 0;
    std::size_t size = 0;
};

using Lists = std::array<List, listedCriteria.size()>;

// What the properties of files accept, in numbers. What no element has is left out.
class AcceptedNumbers {
public:
    explicit AcceptedNumbers(const Numberings& numberings) : numberings(numberings) {}

    // Of a criterion of the target; noNumber when no element has it.
    Number numberOf(std::size_t criterion, const Requirements& requirements) const;

    // An array is read once, however many board objects share it.
    Lists listsOf(const Requirements& requirements);

    // In ascending order. Good until more lists are read.
    std::span<const Number> numbersOf(const List& list) const
    {
        return std::span(numbers).subspan(list.begin, list.size);
    }

private:
    List listOf(std::size_t criterion, const json* property);
    List read(std::size_t criterion, const json& property);

    const Numberings& numberings;
    std::vector<Number> numbers;
    std::array<std::unordered_map<const json*, List>, MatchCriterion::count> arrays;
};

Number AcceptedNumbers::numberOf(std::size_t criterion, const Requirements& requirements) const
{
    Number number = noNumber;
    if (const json* const property = requirements.expected(matchCriteria[criterion])) {
        anyStated(*property, matchCriteria[criterion].form, [&](const MatchValue& value) {
            number = numberings[criterion].find(value);
            return true;
        });
    }
    return number;
}

Lists AcceptedNumbers::listsOf(const Requirements& requirements)
{
    Lists lists;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        lists[i] = listOf(listedCriteria[i], requirements.expected(matchCriteria[listedCriteria[i]]));
    }
    return lists;
}

List AcceptedNumbers::listOf(std::size_t criterion, const json* property)
{
    if (property == nullptr) {
        return {};
    }
    if (!property->is_array()) {
        return read(criterion, *property);
    }
    const auto [entry, isNew] = arrays[criterion].try_emplace(property);
    if (isNew) {
        entry->second = read(criterion, *property);
    }
    return entry->second;
}

List AcceptedNumbers::read(std::size_t criterion, const json& property)
{
    const std::size_t begin = numbers.size();
    anyStated(property, matchCriteria[criterion].form, [&](const MatchValue& value) {
        if (const Number number = numberings[criterion].find(value); number != noNumber) {
            numbers.push_back(number);
        }
        return false;
    });
    const auto first = numbers.begin() + static_cast<std::ptrdiff_t>(begin);
    std::sort(first, numbers.end());
    numbers.erase(std::unique(first, numbers.end()), numbers.end());
    return {begin, numbers.size() - begin};
}

class FirstFits {
public:
    explicit FirstFits(const ZoCUpdateInventory::ElementList& elements);

    // Files must be added in the archive's order.
    void add(const ZoSUpdateFile& file, std::uint32_t index);

    // After all files were added.
    std::vector<std::optional<std::uint32_t>> filesOfElements();

private:
    using Concern = std::bitset<targetCriteria.size()>;  // which of these criteria concern an element

    struct WaitingFile {
        std::uint32_t index;
        Lists lists;
    };
    using WaitingFiles = std::vector<WaitingFile>;

    Key keyOf(const ZoSUpdateElement& element);
    std::optional<Target> targetOf(const Requirements& requirements, Number boardType, const Concern& concern) const;
    void addToTarget(const Target& target, const Lists& lists, std::uint32_t index);
    void lookUp(Key& key, const Lists& lists, std::uint32_t index, std::size_t property = 0);
    void decideForWaitingFiles();
    void decide(ListSearch& search, const std::vector<Group*>& targetGroups, const WaitingFiles& files);

    const json pathOtherwise{targetPathOtherwise};
    std::pmr::monotonic_buffer_resource memory;  // of the maps from which nothing is ever taken out
    Numberings numberings;
    AcceptedNumbers accepted{numberings};
    Groups groups{&memory};
    std::vector<const Group*> groupOfElement;
    std::vector<Concern> concerns;  // all that there are
    std::unordered_map<Target, WaitingFiles, Hash> waiting;
};

FirstFits::FirstFits(const ZoCUpdateInventory::ElementList& elements)
{
    for (std::size_t criterion = 0; criterion < MatchCriterion::count; ++criterion) {
        numberings.emplace_back(&memory);
    }
    groups.reserve(elements.size());
    groupOfElement.reserve(elements.size());
    for (const ZoSUpdateElement& element : elements) {
        const auto [group, isNew] = groups.try_emplace(keyOf(element));
        groupOfElement.push_back(&*group);
        Concern concern;
        for (std::size_t i = 0; i < targetCriteria.size(); ++i) {
            concern[i] = group->first.target[i] != noNumber;
        }
        if (std::find(concerns.begin(), concerns.end(), concern) == concerns.end()) {
            concerns.push_back(concern);
        }
    }
}

Key FirstFits::keyOf(const ZoSUpdateElement& element)
{
    const auto numberOf = [&](std::size_t criterion) {
        std::optional<MatchValue> value = matchCriteria[criterion].actual(element);
        return value ? numberings[criterion].add(*std::move(value)) : noNumber;
    };
    Key key{};
    std::transform(targetCriteria.begin(), targetCriteria.end(), key.target.begin(), numberOf);
    std::transform(listedCriteria.begin(), listedCriteria.end(), key.listed.begin(), numberOf);
    return key;
}

void FirstFits::add(const ZoSUpdateFile& file, std::uint32_t index)
{
    for (const auto& [type, board] : decidingBoards(file)) {
        const Number boardType = numberings[MatchCriterion::boardType].find(type);
        if (boardType == noNumber) {
            continue;
        }
        const Requirements requirements(*board, file, pathOtherwise);
        for (const Concern& concern : concerns) {
            if (const auto target = targetOf(requirements, boardType, concern)) {
                addToTarget(*target, accepted.listsOf(requirements), index);
            }
        }
    }
}

// Nothing when no element is in it.
std::optional<Target> FirstFits::targetOf(const Requirements& requirements, Number boardType,
                                          const Concern& concern) const
{
    Target target{boardType};
    for (std::size_t i = 1; i < target.size(); ++i) {
        if (concern[i]) {
            target[i] = accepted.numberOf(targetCriteria[i], requirements);
            if (target[i] == noNumber) {
                return std::nullopt;
            }
        }
    }
    return target;
}

void FirstFits::addToTarget(const Target& target, const Lists& lists, std::uint32_t index)
{
    double combinations = 1;  // too many, possibly, for an integer
    for (const List& list : lists) {
        combinations *= static_cast<double>(list.size);
    }
    constexpr double fewCombinations = 32;  // to look them up is no more work than to wait
    if (combinations > fewCombinations) {
        waiting[target].push_back({index, lists});
        return;
    }
    Key key{target, {}};
    lookUp(key, lists, index);
}

void FirstFits::lookUp(Key& key, const Lists& lists, std::uint32_t index, std::size_t property)
{
    if (property < lists.size()) {
        for (const Number number : accepted.numbersOf(lists[property])) {
            key.listed[property] = number;
            lookUp(key, lists, index, property + 1);
        }
    } else if (const auto group = groups.find(key); group != groups.end() && !group->second) {
        group->second = index;
    }
}

std::vector<std::optional<std::uint32_t>> FirstFits::filesOfElements()
{
    decideForWaitingFiles();
    std::vector<std::optional<std::uint32_t>> files;
    files.reserve(groupOfElement.size());
    for (const Group* const group : groupOfElement) {
        files.push_back(group->second);
    }
    return files;
}

void FirstFits::decideForWaitingFiles()
{
    if (waiting.empty()) {
        return;
    }
    std::unordered_map<Target, std::vector<Group*>, Hash> groupsOfTarget;
    for (Group& group : groups) {
        groupsOfTarget[group.first.target].push_back(&group);
    }
    NumberRow ends{};
    std::transform(listedCriteria.begin(), listedCriteria.end(), ends.begin(),
                   [&](std::size_t criterion) { return numberings[criterion].end(); });
    ListSearch search(ends);
    for (const auto& [target, files] : waiting) {
        if (const auto found = groupsOfTarget.find(target); found != groupsOfTarget.end()) {
            decide(search, found->second, files);
        }
    }
}

void FirstFits::decide(ListSearch& search, const std::vector<Group*>& targetGroups, const WaitingFiles& files)
{
    std::vector<ListOffer> offers;
    for (const WaitingFile& file : files) {
        ListOffer& offer = offers.emplace_back(ListOffer{file.index, {}});
        std::transform(file.lists.begin(), file.lists.end(), offer.accepted.begin(),
                       [&](const List& list) { return accepted.numbersOf(list); });
    }
    std::vector<SoughtRow> rows;
    rows.reserve(targetGroups.size());
    for (const Group* const group : targetGroups) {
        rows.push_back({group->first.listed, group->second});
    }
    search.search(rows, offers);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        targetGroups[i]->second = rows[i].position;
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
