#include "tool/arguments/Words.h"

#include <algorithm>
#include <utility>

#include "tool/arguments/Option.h"

namespace TrellanTool {

namespace {

std::string inQuotes(const std::string& word)
{
    return "'" + word + "'";
}

bool isOption(const std::string& word)
{
    return word.size() > 1 && word.starts_with('-');
}

}  // namespace

Words::Words(const std::vector<std::string>& typed) : typed(typed)
{
    while (next < typed.size()) {
        const std::string& word = typed[next++];
        if (word == "--") {
            endsOptions = true;
            others.insert(others.end(), typed.begin() + static_cast<std::ptrdiff_t>(next), typed.end());
            return;
        }
        if (word.starts_with("--")) {
            readLong(word);
        } else if (isOption(word)) {
            readShort(word);
        } else {
            others.push_back(word);
        }
    }
}

void Words::refuse(const std::string& text)
{
    mistake = mistake.empty() ? text : mistake;
}

void Words::refuseUnknown(const std::string& word, const std::string& name)
{
    unknown = mistake.empty() ? name : unknown;
    refuse(inQuotes(word) + " is no option");
}

void Words::readLong(const std::string& word)
{
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    const Option* const option = findOption(name);
    if (option == nullptr) {
        refuseUnknown(word, name);
    } else if (option->placeholder != nullptr) {
        equals != std::string::npos ? add(*option, word.substr(equals + 1)) : addNextWord(*option);
    } else if (equals != std::string::npos) {
        refuse(name + ": no value is expected");
    } else {
        options.push_back({option, ""});
    }
}

// Several flags may share one dash.
void Words::readShort(const std::string& word)
{
    for (const char letter : word.substr(1)) {
        const Option* const option = findOption(letter);
        if (option == nullptr) {
            refuseUnknown(word, "-" + word);
            return;
        }
        options.push_back({option, ""});
    }
}

// A forgotten value is not taken from the next option; what is behind "=" cannot be meant otherwise.
void Words::addNextWord(const Option& option)
{
    if (next == typed.size()) {
        waiting = &option;
        refuse(std::string(option.name) + ": a value is expected (" + option.placeholder + ")");
    } else if (isOption(typed[next])) {
        refuse(std::string(option.name) + ": a value is expected, not " + inQuotes(typed[next]));
    } else {
        add(option, typed[next++]);
    }
}

void Words::add(const Option& option, std::string value)
{
    const bool given =
        std::any_of(options.begin(), options.end(), [&](const GivenOption& other) { return other.option == &option; });
    if (given && (option.manners & REPEATABLE) == 0) {
        refuse(std::string(option.name) + ": given more than once");
    }
    options.push_back({&option, std::move(value)});
}

}  // namespace TrellanTool
