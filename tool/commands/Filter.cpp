// A filter's tokens, each with whether it has selected something, by value or as displayed.
#include "tool/commands/Filter.h"

#include <algorithm>

namespace TrellanTool {

namespace {

constexpr const char* separators = " ,";

std::vector<std::string_view> splitList(std::string_view list)
{
    std::vector<std::string_view> tokens;
    for (std::size_t at = list.find_first_not_of(separators); at != std::string_view::npos;) {
        const std::size_t end = std::min(list.find_first_of(separators, at), list.size());
        tokens.push_back(list.substr(at, end - at));
        at = list.find_first_not_of(separators, end);
    }
    return tokens;
}

bool isSeparator(char character)
{
    return character == ' ' || character == ',';
}

}  // namespace

Filter::Filter(std::string what, std::string given)
    : what(std::move(what)), list(std::move(given)), tokens(splitList(list))
{
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        positions[tokens[i]].push_back(i);
    }
}

void Filter::note(const std::string& value, const std::string& displayed)
{
    // The same value displayed in two ways counts as two.
    if (!value.empty() && noted.try_emplace(value + '\0' + displayed, values.size()).second) {
        values.push_back({value, displayed});
    }
}

void Filter::noteNone(const std::string& value)
{
    note(value, "");
    values[noted.at(value + '\0')].isNone = true;
}

// Calls take with the position of each token that is `name`, or a part of it where it stands in the list with its
// blanks and commas.
template <typename Take>
void Filter::eachToken(const std::string& name, Take take) const
{
    if (name.empty()) {
        return;
    }
    if (name.find_first_of(separators) == std::string::npos) {
        if (const auto found = positions.find(name); found != positions.end()) {
            std::for_each(found->second.begin(), found->second.end(), take);
        }
        return;
    }
    for (std::size_t at = list.find(name); at != std::string::npos; at = list.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if ((at != 0 && !isSeparator(list[at - 1])) || (end != list.size() && !isSeparator(list[end]))) {
            continue;
        }
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            const auto begin = static_cast<std::size_t>(tokens[i].data() - list.data());
            if (begin >= at && begin < end) {
                take(i);
            }
        }
    }
}

bool Filter::isAmong(const std::string& name) const
{
    bool found = false;
    eachToken(name, [&](std::size_t) { found = true; });
    return found;
}

std::vector<bool> Filter::tokensThatSelect(bool asDisplayed) const
{
    std::vector<bool> select(tokens.size(), false);
    for (const Value& value : values) {
        eachToken(value.text, [&](std::size_t token) { select[token] = true; });
        if (asDisplayed) {
            eachToken(value.displayed, [&](std::size_t token) { select[token] = true; });
        }
    }
    return select;
}

bool Filter::isExplained(bool displayedApart) const
{
    const std::vector<bool> select = tokensThatSelect(false);
    const bool mayMeanOthers = !displayedApart && std::any_of(values.begin(), values.end(), [&](const Value& value) {
        return isAmong(value.displayed);
    });
    return !mayMeanOthers && std::all_of(select.begin(), select.end(), [](bool selects) { return selects; });
}

std::string Filter::withDisplayedMeant() const
{
    std::string meant = list;
    for (const Value& value : values) {
        if (isAmong(value.displayed) && !isAmong(value.text)) {
            meant += "," + value.text;
        }
    }
    return meant;
}

std::string Filter::whatThereIs() const
{
    std::string text;
    std::size_t count = 0;
    for (const Value& value : values) {
        if (value.isNone) {
            continue;
        }
        text += count++ == 0 ? "" : ", ";
        text += value.text;
        text += value.displayed.empty() || value.displayed == value.text ? "" : " (" + value.displayed + ")";
    }
    if (count == 0) {
        return "there is none";
    }
    return (count == 1 ? "there is " : "there are ") + text;
}

std::vector<std::string> Filter::complaints() const
{
    const std::vector<bool> select = tokensThatSelect(true);
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const bool isFirst = positions.at(tokens[i]).front() == i;
        if (!select[i] && isFirst) {
            lines.push_back("nothing has " + what + " " + std::string(tokens[i]) + "; " + whatThereIs());
        }
    }
    return lines;
}

}  // namespace TrellanTool
