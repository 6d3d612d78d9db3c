// One pass over what was typed, by the tables of commands and options.
#include "tool/arguments/Arguments.h"

#include <algorithm>

#include "tool/arguments/Command.h"
#include "tool/arguments/Operands.h"
#include "tool/arguments/Option.h"

namespace TrellanTool {

namespace {

std::string inQuotes(const std::string& word)
{
    return "'" + word + "'";
}

// An option as it was given, its value empty where it is a flag.
struct GivenOption {
    const Option* option;
    std::string value;
};

// The words of a command line, sorted into options and the others, which keep their order.
class Words {
public:
    explicit Words(const std::vector<std::string>& typed) : typed(typed)
    {
        while (next < typed.size()) {
            const std::string& word = typed[next++];
            if (word == "--") {
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

    std::vector<GivenOption> options;
    std::vector<std::string> others;

private:
    static bool isOption(const std::string& word) { return word.size() > 1 && word.starts_with('-'); }

    void readLong(const std::string& word)
    {
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(0, equals);
        const Option* const option = findOption(name);
        if (option == nullptr) {
            throw UsageError(inQuotes(word) + " is no option");
        }
        if (option->placeholder == nullptr && equals != std::string::npos) {
            throw UsageError(name + ": no value is expected");
        }
        if (option->placeholder == nullptr) {
            options.push_back({option, ""});
        } else {
            add(*option, equals != std::string::npos ? word.substr(equals + 1) : nextValue(*option));
        }
    }

    // Several flags may share one dash.
    void readShort(const std::string& word)
    {
        for (const char letter : word.substr(1)) {
            const Option* const option = findOption(letter);
            if (option == nullptr) {
                throw UsageError(inQuotes(word) + " is no option");
            }
            options.push_back({option, ""});
        }
    }

    // A forgotten value is not taken from the next option; what is behind "=" cannot be meant otherwise.
    std::string nextValue(const Option& option)
    {
        if (next == typed.size()) {
            throw UsageError(std::string(option.name) + ": a value is expected (" + option.placeholder + ")");
        }
        if (isOption(typed[next])) {
            throw UsageError(std::string(option.name) + ": a value is expected, not " + inQuotes(typed[next]));
        }
        return typed[next++];
    }

    void add(const Option& option, std::string value)
    {
        const bool given = std::any_of(options.begin(), options.end(),
                                       [&](const GivenOption& other) { return other.option == &option; });
        if (given && (option.manners & REPEATABLE) == 0) {
            throw UsageError(std::string(option.name) + ": given more than once");
        }
        options.push_back({&option, std::move(value)});
    }

    const std::vector<std::string>& typed;
    std::size_t next = 0;
};

void note(Arguments& arguments, const std::string& text)
{
    if (std::find(arguments.notes.begin(), arguments.notes.end(), text) == arguments.notes.end()) {
        arguments.notes.push_back(text);
    }
}

void takeOption(Arguments& arguments, const GivenOption& given)
{
    const Option& option = *given.option;
    if (option.isMeantFor(*arguments.command)) {
        option.take(arguments, option, given.value);
    } else if ((option.manners & NOTED) != 0) {
        note(arguments, "note: " + std::string(option.name) + " has no meaning for " + arguments.command->name);
    } else {
        throw UsageError(std::string(option.name) + " does not go with " + arguments.command->name);
    }
}

void checkTogether(Arguments& arguments)
{
    if (arguments.json && arguments.quiet) {
        throw UsageError("--json does not go with --quiet");
    }
    if (arguments.options.noProgress && arguments.progress.value_or(Progress::NEVER) != Progress::NEVER) {
        throw UsageError("--no-progress means --progress never, and goes with no other");
    }
    if (arguments.progress == Progress::NEVER) {
        arguments.options.noProgress = true;
    }
}

}  // namespace

Arguments parseArguments(const std::vector<std::string>& words)
{
    const Words read(words);
    Arguments arguments;
    arguments.options.descriptionFileName = "archive.json";
    for (const GivenOption& given : read.options) {
        arguments.help |= given.option == findOption("--help");
        arguments.version |= given.option == findOption("--version");
    }
    const bool asksForCommand = !arguments.help && !arguments.version;
    if (read.others.empty() && asksForCommand) {
        throw UsageError("a command is missing");
    }
    if (!read.others.empty()) {
        arguments.command = &commandNamed(read.others.front());
    }
    if (asksForCommand) {
        arguments.options.command = arguments.command->code;
        takeOperands(arguments, {read.others.begin() + 1, read.others.end()});
        for (const GivenOption& given : read.options) {
            takeOption(arguments, given);
        }
        checkTogether(arguments);
    }
    return arguments;
}

}  // namespace TrellanTool
