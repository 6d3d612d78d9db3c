// The table of commands: the only file here that knows what carries them out.
#include <algorithm>
#include <iterator>
#include <vector>

#include "tool/Nearest.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"

namespace TrellanTool {

namespace {

using namespace ZoNTrellanUpdater;

// What belongs together: whoever is about elements reads the target, and so on.
constexpr unsigned OF_ARCHIVE = LIBRARY | ARCHIVE;
constexpr unsigned OF_TARGET = LIBRARY | TARGET;
constexpr unsigned OF_ELEMENTS = OF_TARGET | ELEMENTS;
constexpr unsigned OF_BOTH = OF_ARCHIVE | OF_ELEMENTS | FILES;

constexpr Command commandTable[] = {
    {"version", "", LIBRARY | DOCUMENT, TOOL_VERSION, runInLibrary, "Print the version of the update library",
     "trellan-update version"},
    {"archive-version", "ARCHIVE", OF_ARCHIVE | DOCUMENT, ARCHIVE_VERSION, runInLibrary,
     "Print the version of the archive", "trellan-update archive-version archive"},
    {"list", "ARCHIVE", OF_ARCHIVE | DOCUMENT, PRINT_ARCHIVE, runInLibrary, "Print the archive's update files",
     "trellan-update list archive"},
    {"describe", "ARCHIVE", OF_ARCHIVE | RESULT, OUTPUT_DESCRIPTION, describeArchive,
     "Print the archive description as JSON, missing checksums filled in",
     "trellan-update describe archive --output archive/archive.json"},
    {"installed", "", OF_ELEMENTS | DOCUMENT, INSTALLED_VERSIONS, runInLibrary,
     "Print the versions installed on the target", "trellan-update installed --board-types KR5120"},
    {"scan", "", OF_ELEMENTS | DOCUMENT, READ_INVENTORY, runInLibrary, "Read the target's inventory",
     "trellan-update scan --verbose"},
    {"compare", "ARCHIVE", OF_BOTH | TELLS | DOCUMENT, COMPARE_VERSIONS, runInLibrary,
     "Print installed and available versions side by side",
     "trellan-update compare archive --board-types KR5120,AI8100"},
    {"update", "ARCHIVE", OF_BOTH | UPDATES | TELLS | DOCUMENT, UPDATE, updateTarget, "Update the target",
     "trellan-update update archive --verify --events events",
     "something failed or was reported as an error, or --verify has found something else than the file"},
    {"reboot-support", "", OF_TARGET | DOCUMENT, READ_INVENTORY, tellRebootSupport,
     "Tell whether the device can be rebooted automatically", "trellan-update reboot-support",
     "the device cannot be rebooted automatically"},
    {"check", "ARCHIVE", CHECKS | DOCUMENT, 0, checkArchive, "Tell what is wrong with the archive",
     "trellan-update check archive --strict", "errors were found, or with --strict warnings"},
    {"explain", "ARCHIVE", OF_BOTH | EXPLAINS | DOCUMENT, COMPARE_VERSIONS, explain,
     "Tell why elements get the files that they get, and why others do not fit",
     "trellan-update explain archive --element 13", "an element or an entry that was asked for is not there"},
    {"record", "", OF_TARGET | RESULT, READ_INVENTORY, recordTarget,
     "Write the target's inventory as a target file, for a simulated target like it",
     "trellan-update record --output rack.json",
     "something of the target cannot be read, or the result cannot be written"},
    {"coverage", "ARCHIVE TARGET...", OF_ARCHIVE | ELEMENTS | COVERS | DOCUMENT, ARCHIVE_VERSION, tellCoverage,
     "Hold the archive against many targets", "trellan-update coverage archive target.json --html coverage.html",
     "something of a target cannot be read, or the page cannot be written"},
    {"history", "FILE", DOCUMENT, 0, printHistory, "Print what a file of events tells of each update",
     "trellan-update history events", "the file cannot be read"},
    {"inspect", "FILE...", LIBRARY | DOCUMENT, 0, inspectFiles,
     "Tell kind, version and checksum of update files by their content",
     "trellan-update inspect archive/hcn-firmware.bin archive/site.cfg", "a file cannot be read"},
    {"new", "ARCHIVE", OF_ARCHIVE | OF_ELEMENTS, READ_INVENTORY, newArchive,
     "Begin an archive for the target: a description with an entry for each element",
     "trellan-update new fresh --board-types AI8100",
     "there is a description or no element, an element has no entry, or nothing can be written"},
    {"help", "[COMMAND]", DOCUMENT, 0, printHelp, "Print what the tool does, or a command's options",
     "trellan-update help update", "standard output cannot be written"},
    {"complete", "[WORD]...", HIDDEN, 0, completeWord,
     "Tell a shell what the last WORD behind the tool's name may become", "trellan-update complete -- update --ver"},
};

}  // namespace

std::span<const Command> allCommands()
{
    return commandTable;
}

const Command* findCommand(std::string_view name)
{
    const Command* const found = std::find_if(std::begin(commandTable), std::end(commandTable),
                                              [&](const Command& command) { return command.name == name; });
    return found == std::end(commandTable) ? nullptr : found;
}

const Command& commandNamed(const std::string& name)
{
    if (const Command* const found = findCommand(name)) {
        return *found;
    }
    std::vector<std::string> names;
    for (const Command& command : commandTable) {
        if (!command.has(HIDDEN)) {
            names.emplace_back(command.name);
        }
    }
    throw UsageError("'" + name + "' is no command" + didYouMean(name, names));
}

}  // namespace TrellanTool
