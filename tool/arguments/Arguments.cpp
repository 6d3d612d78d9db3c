// One pass over what was typed, by the tables of commands and options.
#include "tool/arguments/Arguments.h"

#include <algorithm>

#include "tool/Nearest.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Operands.h"
#include "tool/arguments/Option.h"
#include "tool/arguments/Words.h"

namespace TrellanTool {

namespace {

void note(Arguments& arguments, const std::string& text)
{
    if (std::find(arguments.notes.begin(), arguments.notes.end(), text) == arguments.notes.end()) {
        arguments.notes.push_back(text);
    }
}

bool goesWith(const Option& option, const Command* command)
{
    return command == nullptr || option.isMeantFor(*command) || (option.manners & (NOTED | TAKEN)) != 0;
}

void takeOption(Arguments& arguments, const GivenOption& given)
{
    const Option& option = *given.option;
    if (option.isMeantFor(*arguments.command)) {
        option.take(arguments, option, given.value);
    } else if ((option.manners & NOTED) != 0) {
        note(arguments, "note: " + std::string(option.name) + " has no meaning for " + arguments.command->name);
    } else if (!goesWith(option, arguments.command)) {
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
        arguments.json |= given.option == findOption("--json");
        arguments.quiet |= given.option == findOption("--quiet");
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
    }
    checkTogether(arguments);
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

Arguments understandOptions(const Words& words)
{
    Arguments arguments;
    for (const GivenOption& given : words.options) {
        try {
            given.option->take(arguments, *given.option, given.value);
        } catch (const std::exception&) {
            continue;  // as if it had not been given
        }
    }
    return arguments;
}

}  // namespace TrellanTool
