// From where a word stands to what it may be, by the tables of commands and options.
#include "tool/completion/Completion.h"

#include <algorithm>
#include <sstream>

#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Option.h"
#include "tool/arguments/Words.h"
#include "tool/completion/ListCompletion.h"
#include "tool/completion/TargetCandidates.h"

namespace TrellanTool {

namespace {

Completion valueOf(const Option& option, const std::string& word, const Words& before)
{
    if (option.value == Value::FILE) {
        return {Completion::FILES, {}};
    }
    if (option.value == Value::OTHER) {
        Completion completion;
        for (const char* const choice : option.choices) {
            completion.candidates.push_back({choice, ""});
        }
        return completion;
    }
    const std::vector<Candidate> known = candidatesOnTarget(option.value, understandOptions(before));
    if (option.value == Value::ELEMENT) {
        return {Completion::WORDS, known};
    }
    Completion completion{Completion::LIST, completedLists(word, known)};
    // In a word of its own it would be taken for an option.
    std::erase_if(completion.candidates, [](const Candidate& candidate) { return candidate.word.starts_with('-'); });
    return completion;
}

bool isGiven(const Option* option, const Words& before)
{
    return std::any_of(before.options.begin(), before.options.end(),
                       [&](const GivenOption& other) { return other.option == option; });
}

// Help and the tool's version go without a command, and have a document whatever the command.
bool isMeant(const Option& option, const Words& before)
{
    const Option* const help = findOption("--help");
    const Option* const version = findOption("--version");
    if (&option == findOption("--json") && (isGiven(help, before) || isGiven(version, before))) {
        return true;
    }
    if (before.others.empty()) {
        return &option == help || &option == version;
    }
    const Command* const command = findCommand(before.others.front());
    return command != nullptr && option.isMeantFor(*command);
}

bool mayStand(const Option& option, const Words& before)
{
    return isMeant(option, before) && (!isGiven(&option, before) || (option.manners & REPEATABLE) != 0);
}

Completion optionsBehind(const Words& before)
{
    Completion completion;
    for (const Option& option : allOptions()) {
        if (mayStand(option, before)) {
            completion.candidates.push_back({option.name, option.description});
        }
    }
    return completion;
}

Completion allCommandNames()
{
    Completion completion;
    for (const Command& command : allCommands()) {
        if (!command.has(HIDDEN)) {
            completion.candidates.push_back({command.name, command.description});
        }
    }
    return completion;
}

// The operand with this position; of "FILE..." there may be any number.
Completion operandOf(const Command& command, std::size_t position)
{
    std::istringstream names(command.operands);
    std::string name;
    for (std::size_t i = 0; i <= position && !name.ends_with("..."); ++i) {
        if (!(names >> name)) {
            return {};
        }
    }
    if (name == "ARCHIVE") {
        return {Completion::FOLDERS, {}};
    }
    return name == "[COMMAND]" ? allCommandNames() : Completion{Completion::FILES, {}};
}

Completion everything(const std::string& word, const Words& before)
{
    if (before.waiting != nullptr) {
        return valueOf(*before.waiting, word, before);
    }
    if (word.starts_with('-') && !before.endsOptions) {
        return optionsBehind(before);
    }
    if (before.others.empty()) {
        return allCommandNames();
    }
    const Command* const command = findCommand(before.others.front());
    return command == nullptr ? Completion{} : operandOf(*command, before.others.size() - 1);
}

}  // namespace

Completion completionOf(const std::vector<std::string>& words)
{
    std::vector<std::string> typed = words;
    std::string word;
    if (!typed.empty()) {
        word = std::move(typed.back());
        typed.pop_back();
    }
    Completion completion = everything(word, Words(typed));
    std::erase_if(completion.candidates, [&](const Candidate& candidate) { return !candidate.word.starts_with(word); });
    return completion;
}

}  // namespace TrellanTool
