// What the command line asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"

namespace TrellanTool {

struct Command;
class Words;

// When an update's progress is printed.
enum class Progress {
    ALWAYS,
    AUTO,  // to a terminal as always, elsewhere a line for each phase and tenth of it
    NEVER
};

struct Arguments {
    const Command* command = nullptr;       // null only where `help` or `version` is set
    std::vector<std::string> operands;      // what stands behind the command, ARCHIVE excepted, as typed
    std::vector<std::string> notes;         // what is to be said before: options that have no meaning for the command
    ZoNTrellanUpdater::ZoTOptions options;  // archivePath is absolute, or empty where the command takes no archive
    std::vector<std::uint32_t> excluded;    // indices of elements to leave out of the update, in the order given
    std::optional<std::string> targetFile;  // value for TRELLAN_TARGET, absolute
    std::optional<std::string> traceFile;   // value for TRELLAN_TRACE, absolute
    bool noCheck = false;                   // do just what the library does
    bool dryRun = false;                    // tell what an update would do, and do nothing
    std::optional<std::string> planFile;    // the plan by which to update, absolute
    bool verify = false;                    // scan again after an update, and compare
    bool detailedExitStatus = false;        // end with UPDATES_AVAILABLE where there is something to update
    std::optional<std::string> eventsFile;  // where to append an update's events, absolute
    std::optional<double> stallTimeout;     // seconds, above 0, without progress after which an update is given up
    std::optional<Progress> progress;       // as --progress says
    std::vector<std::uint32_t> explainedElements;  // indices; those to explain
    std::vector<std::uint32_t> explainedFiles;     // positions in "files" of the description
    bool strict = false;                           // count a check's warnings as errors
    std::optional<std::string> outputFile;         // where to write the result, absolute; standard output otherwise
    std::optional<std::string> htmlFile;           // where to write a page for a browser, absolute
    bool quiet = false;                            // print nothing on standard output
    bool json = false;                             // print a JSON document in place of the library's text
    bool help = false;                             // print the command's help, or the tool's, and do nothing else
    bool version = false;                          // print the tool's version and do nothing else
};

// The command line is not understood; what() names the mistake.
class UsageError : public std::runtime_error {
public:
    explicit UsageError(const std::string& mistake, const Command* command = nullptr)
        : std::runtime_error(mistake), command(command)
    {
    }

    // The one whose help has the answer; null: the tool's help has it.
    const Command* const command;
};

// Reads the words of a command line, without the tool's own name. Options may stand before and behind everything else,
// up to a "--"; a value stands in the next word or behind "=". Throws UsageError; std::runtime_error where a relative
// path has no meaning.
Arguments parseArguments(const std::vector<std::string>& words);

// Of the options that `words` gives those that can be understood, as parseArguments() does; nothing is refused.
Arguments understandOptions(const Words& words);

}  // namespace TrellanTool
