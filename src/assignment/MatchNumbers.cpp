#include "assignment/MatchNumbers.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "assignment/MatchCriteria.h"

using ZoNJson::json;

namespace ZoNUpdateAssignment {
namespace {

static_assert(std::tuple_size_v<Lists> == listedCriteria.size());

std::uint64_t hashOf(const MatchValue& value)
{
    return ZoNUpdateBase::combinedHash(0, std::hash<MatchValue>()(value));
}

bool isOneNumber(std::size_t criterion)
{
    return matchCriteria[criterion].form == StatedAs::number;
}

// Elements have, and such properties state, numbers of 32 bits.
Number numberIn(const MatchValue& value)
{
    return static_cast<Number>(std::get<unsigned long long>(value));
}

}  // namespace

Number Numbering::add(MatchValue value)
{
    if (const auto number = find(value)) {
        return *number;
    }
    index.add(hashOf(value), end());
    values.push_back(std::move(value));
    return end() - 1;
}

std::optional<Number> Numbering::find(const MatchValue& value) const
{
    return index.find(hashOf(value), [&](Number number) { return values[number] == value; });
}

Numberings::Numberings() : byCriterion(MatchCriterion::count) {}

Number Numberings::add(std::size_t criterion, MatchValue value)
{
    return isOneNumber(criterion) ? numberIn(value) : byCriterion[criterion].add(std::move(value));
}

std::optional<Number> Numberings::find(std::size_t criterion, const MatchValue& value) const
{
    return isOneNumber(criterion) ? numberIn(value) : byCriterion[criterion].find(value);
}

std::optional<Number> AcceptedNumbers::numberOf(std::size_t criterion, const Requirements& requirements) const
{
    std::optional<Number> number;
    if (const json* const property = requirements.expected(matchCriteria[criterion])) {
        anyStated(*property, matchCriteria[criterion].form, [&](const MatchValue& value) {
            number = numberings.find(criterion, value);
            return true;
        });
    }
    return number;
}

void AcceptedNumbers::beginFile()
{
    beginOfFile = numbers.size();
    shared = {};
}

void AcceptedNumbers::share(const Requirements& entry)
{
    for (std::size_t i = 0; i < shared.size(); ++i) {
        shared[i] = {entry.expected(matchCriteria[listedCriteria[i]]), std::nullopt};
    }
}

Lists AcceptedNumbers::listsOf(const Requirements& requirements)
{
    Lists lists;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        // Where none is stated, each of these has another.
        const json* const property = requirements.expected(matchCriteria[listedCriteria[i]]);
        if (property != shared[i].property) {
            lists[i] = read(listedCriteria[i], *property);
            continue;
        }
        if (!shared[i].list) {
            shared[i].list = read(listedCriteria[i], *property);
        }
        lists[i] = *shared[i].list;
    }
    return lists;
}

List AcceptedNumbers::read(std::size_t criterion, const json& property)
{
    const std::size_t begin = numbers.size();
    anyStated(property, matchCriteria[criterion].form, [&](const MatchValue& value) {
        if (const auto number = numberings.find(criterion, value)) {
            numbers.push_back(*number);
        }
        return false;
    });
    const auto first = numbers.begin() + static_cast<std::ptrdiff_t>(begin);
    std::sort(first, numbers.end());
    numbers.erase(std::unique(first, numbers.end()), numbers.end());
    return {begin, numbers.size() - begin};
}

}  // namespace ZoNUpdateAssignment
