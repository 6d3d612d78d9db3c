// The lines of the help, laid out in columns as wide as what stands in them.
#include "tool/arguments/Help.h"

#include <string_view>

#include "tool/arguments/Command.h"
#include "tool/arguments/ExitMeanings.h"
#include "tool/arguments/Option.h"

namespace TrellanTool {

namespace {

constexpr std::size_t firstColumn = 30;

std::string row(std::string_view name, std::string_view description)
{
    std::string line = "  " + std::string(name);
    line.resize(std::max(line.size() + 2, firstColumn), ' ');
    return line.append(description) + "\n";
}

std::string withOperands(const Command& command)
{
    return command.name + (*command.operands == '\0' ? "" : " " + std::string(command.operands));
}

std::string commandRows()
{
    std::string rows;
    for (const Command& command : allCommands()) {
        rows += command.has(HIDDEN) ? "" : row(withOperands(command), command.description);
    }
    return rows;
}

std::string optionRow(const Option& option)
{
    std::string name = option.letter == 0 ? "" : std::string("-") + option.letter + ", ";
    name += option.name;
    name += option.placeholder == nullptr ? "" : " " + std::string(option.placeholder);
    return row(name, option.description);
}

std::string optionRows(const Command* command)
{
    std::string rows;
    for (const Option* const option : helpOptions(command)) {
        rows += optionRow(*option);
    }
    return rows;
}

// Numbers of up to three digits end at the same column; several begin where the first of them does.
std::string exitRow(const ExitMeaning& exit)
{
    std::string statuses;
    for (const int status : exit.statuses) {
        statuses += (statuses.empty() ? "" : ", ") + std::to_string(status);
    }
    const std::size_t blanks = statuses.size() < 3 ? 3 - statuses.size() : 2;
    return std::string(blanks, ' ') + statuses + "  " + exit.meaning + "\n";
}

std::string exitRows(const Command* command)
{
    std::string rows = "\nExit status:\n";
    for (const ExitMeaning& exit : exitMeanings(command)) {
        rows += exitRow(exit);
    }
    return rows;
}

// What help begins with.
std::string opening(const Command* command)
{
    return "Usage: " + helpUsage(command) + "\n\n" + helpDescription(command) + "\n";
}

}  // namespace

std::string helpUsage(const Command* command)
{
    return "trellan-update " + (command == nullptr ? "COMMAND [ARCHIVE]" : withOperands(*command)) + " [options]";
}

std::string helpDescription(const Command* command)
{
    return command == nullptr ? "Updates the firmware of a target from an archive."
                              : command->description + std::string(".");
}

std::vector<const Option*> helpOptions(const Command* command)
{
    if (command == nullptr) {
        return {findOption("--help"), findOption("--version"), findOption("--json")};
    }
    std::vector<const Option*> options;
    for (const Option& option : allOptions()) {
        if (option.isMeantFor(*command)) {
            options.push_back(&option);
        }
    }
    return options;
}

std::string toolHelp()
{
    return opening(nullptr) + "\nCommands:\n" + commandRows() + "\nOptions:\n" + optionRows(nullptr) +
           exitRows(nullptr) +
           "\ntrellan-update help COMMAND prints a command's options, an example and its exit statuses.\n";
}

std::string commandHelp(const Command& command)
{
    std::string text = opening(&command);
    text += command.has(ARCHIVE | CHECKS) ? "ARCHIVE is the folder of the firmware archive.\n" : "";
    text += command.has(COVERS) ? "TARGET is a target file, or a folder for the .json files in it.\n" : "";
    text += "\nOptions:\n" + optionRows(&command);
    text += command.has(ELEMENTS) ? "\nA LIST holds names separated by commas and/or blanks.\n" : "";
    text += "\nExample:\n  " + std::string(command.example) + "\n";
    return text + exitRows(&command);
}

std::string helpCommand(const Command* command)
{
    return "trellan-update help" + (command == nullptr ? "" : " " + std::string(command->name));
}

std::string commandsAndExample()
{
    return "a command is missing; there are\n" + commandRows() +
           "for example: trellan-update compare /path/of/the/archive\n"
           "see trellan-update help COMMAND for its options";
}

}  // namespace TrellanTool
