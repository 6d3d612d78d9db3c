// One pass over what was typed, by the tables of commands and options.
#include "tool/arguments/Arguments.h"

#include <algorithm>

#include "tool/Nearest.h"
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

// The words of a command line, sorted into options and the others, which keep their order. It goes on behind a mistake,
// since the command may stand there.
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
    std::string mistake;  // the first, or empty
    std::string unknown;  // where that is an option that there is not: its name, with the dashes of a long one

private:
    void refuse(const std::string& text) { mistake = mistake.empty() ? text : mistake; }

    void refuseUnknown(const std::string& word, const std::string& name)
    {
        unknown = mistake.empty() ? name : unknown;
        refuse(inQuotes(word) + " is no option");
    }

    static bool isOption(const std::string& word) { return word.size() > 1 && word.starts_with('-'); }

    void readLong(const std::string& word)
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
    void readShort(const std::string& word)
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
    void addNextWord(const Option& option)
    {
        if (next == typed.size()) {
            refuse(std::string(option.name) + ": a value is expected (" + option.placeholder + ")");
        } else if (isOption(typed[next])) {
            refuse(std::string(option.name) + ": a value is expected, not " + inQuotes(typed[next]));
        } else {
            add(option, typed[next++]);
        }
    }

    void add(const Option& option, std::string value)
    {
        const bool given = std::any_of(options.begin(), options.end(),
                                       [&](const GivenOption& other) { return other.option == &option; });
        if (given && (option.manners & REPEATABLE) == 0) {
            refuse(std::string(option.name) + ": given more than once");
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

bool goesWith(const Option& option, const Command* command)
{
    return command == nullptr || option.isMeantFor(*command) || (option.manners & NOTED) != 0;
}

// The first mistake, with the option that may have been meant: one that goes with the command, where that is known.
std::string mistakeIn(const Words& read, const Command* command)
{
    std::vector<std::string> names;
    for (const Option& option : allOptions()) {
        if (goesWith(option, command)) {
            names.emplace_back(option.name);
        }
    }
    return read.mistake + (read.unknown.empty() ? "" : didYouMean(read.unknown, names));
}

void readInto(Arguments& arguments, const Words& read)
{
    for (const GivenOption& given : read.options) {
        arguments.help |= given.option == findOption("--help");
        arguments.version |= given.option == findOption("--version");
    }
    if (!read.mistake.empty()) {
        arguments.command = read.others.empty() ? nullptr : findCommand(read.others.front());
        throw UsageError(mistakeIn(read, arguments.command));
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
}

}  // namespace

Arguments parseArguments(const std::vector<std::string>& words)
{
    const Words read(words);
    Arguments arguments;
    arguments.options.descriptionFileName = "archive.json";
    try {
        readInto(arguments, read);
    } catch (const UsageError& error) {
        throw UsageError(error.what(), arguments.command);
    }
    return arguments;
}

}  // namespace TrellanTool
