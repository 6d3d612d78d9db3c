// Help, made of the tables of commands and options.
#pragma once

#include <string>
#include <vector>

namespace TrellanTool {

struct Command;
struct Option;

// What the help of a command or, for null, of the tool shows: how it is called, what it does, in a sentence, and the
// options that have a meaning for it.
std::string helpUsage(const Command* command);
std::string helpDescription(const Command* command);
std::vector<const Option*> helpOptions(const Command* command);

// What the tool does, and its commands.
std::string toolHelp();

// What a command does, the options that have a meaning for it, an example and its exit statuses.
std::string commandHelp(const Command& command);

// What is typed for the help of a command or, for null, of the tool.
std::string helpCommand(const Command* command);

// For a command line without a command: the commands and one example, without a line end.
std::string commandsAndExample();

}  // namespace TrellanTool
