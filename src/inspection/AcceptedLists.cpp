#include "inspection/AcceptedLists.h"

#include <algorithm>

#include "inspection/Demands.h"

using ZoNJson::json;
using ZoNUpdateBase::MatchValue;

namespace ZoNUpdateInspection {
namespace {

// Numbers that a board can have are below these.
constexpr std::uint64_t ofNull = std::uint64_t(1) << 32;
constexpr std::uint64_t ofFirstText = ofNull + 1;

// Of lists up to this length it is quicker to look again than to know.
constexpr std::size_t fewValues = 16;

// Whether they have a value in common, in a time that grows with the shorter one.
bool haveCommonValue(const AcceptedLists::List& shorter, const AcceptedLists::List& longer)
{
    auto from = longer.begin();
    return std::any_of(shorter.begin(), shorter.end(), [&](std::uint64_t value) {
        from = std::lower_bound(from, longer.end(), value);
        return from != longer.end() && *from == value;
    });
}

}  // namespace

const AcceptedLists::List& AcceptedLists::listOf(const json* stated)
{
    const auto [place, isNew] = lists.try_emplace(stated);
    List& list = place->second;
    if (isNew) {
        const std::vector<MatchValue> values = acceptedValues(stated);
        list.reserve(values.size());
        for (const MatchValue& value : values) {
            list.push_back(numberOf(value));
        }
        std::sort(list.begin(), list.end());
    }
    return list;
}

bool AcceptedLists::intersect(const List& a, const List& b)
{
    const List& shorter = a.size() < b.size() ? a : b;
    const List& longer = &shorter == &a ? b : a;
    if (shorter.size() <= fewValues) {
        return haveCommonValue(shorter, longer);
    }
    const auto [place, isNew] = known.try_emplace({&shorter, &longer});
    if (isNew) {
        place->second = haveCommonValue(shorter, longer);
    }
    return place->second;
}

std::uint64_t AcceptedLists::numberOf(const MatchValue& value)
{
    if (const auto* const text = std::get_if<std::string>(&value)) {
        return texts.try_emplace(*text, ofFirstText + texts.size()).first->second;
    }
    const auto* const number = std::get_if<unsigned long long>(&value);
    return number != nullptr ? *number : ofNull;
}

}  // namespace ZoNUpdateInspection
