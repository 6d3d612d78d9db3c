// The table of commands: the only file here that knows what carries them out.
#include <algorithm>
#include <iterator>

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
    {"version", "", LIBRARY | DOCUMENT, TOOL_VERSION, runInLibrary, "Print the version of the update library"},
    {"archive-version", "ARCHIVE", OF_ARCHIVE | DOCUMENT, ARCHIVE_VERSION, runInLibrary,
     "Print the version of the archive"},
    {"list", "ARCHIVE", OF_ARCHIVE | DOCUMENT, PRINT_ARCHIVE, runInLibrary, "Print the archive's update files"},
    {"describe", "ARCHIVE", OF_ARCHIVE | RESULT, OUTPUT_DESCRIPTION, describeArchive,
     "Print the archive description as JSON, missing checksums filled in"},
    {"installed", "", OF_ELEMENTS | DOCUMENT, INSTALLED_VERSIONS, runInLibrary,
     "Print the versions installed on the target"},
    {"scan", "", OF_ELEMENTS | DOCUMENT, READ_INVENTORY, runInLibrary, "Read the target's inventory"},
    {"compare", "ARCHIVE", OF_BOTH | TELLS | DOCUMENT, COMPARE_VERSIONS, runInLibrary,
     "Print installed and available versions side by side"},
    {"update", "ARCHIVE", OF_BOTH | UPDATES | TELLS | DOCUMENT, UPDATE, updateTarget, "Update the target"},
    {"reboot-support", "", OF_TARGET | DOCUMENT, READ_INVENTORY, tellRebootSupport,
     "Tell whether the device can be rebooted automatically"},
    {"check", "ARCHIVE", CHECKS | DOCUMENT, 0, checkArchive, "Tell what is wrong with the archive"},
    {"explain", "ARCHIVE", OF_BOTH | EXPLAINS | DOCUMENT, COMPARE_VERSIONS, explain,
     "Tell why elements get the files that they get, and why others do not fit"},
    {"record", "", OF_TARGET | RESULT, READ_INVENTORY, recordTarget,
     "Write the target's inventory as a target file, for a simulated target like it"},
    {"coverage", "ARCHIVE TARGET...", OF_ARCHIVE | ELEMENTS | COVERS | DOCUMENT, ARCHIVE_VERSION, tellCoverage,
     "Hold the archive against many targets"},
    {"history", "FILE", DOCUMENT, 0, printHistory, "Print what a file of events tells of each update"},
    {"inspect", "FILE...", LIBRARY | DOCUMENT, 0, inspectFiles,
     "Tell kind, version and checksum of update files by their content"},
    {"new", "ARCHIVE", OF_ARCHIVE | OF_ELEMENTS, READ_INVENTORY, newArchive,
     "Begin an archive for the target: a description with an entry for each element"},
    {"help", "[COMMAND]", 0, 0, printHelp, "Print what the tool does, or a command's options"},
};

}  // namespace

std::span<const Command> allCommands()
{
    return commandTable;
}

const Command& commandNamed(const std::string& name)
{
    const Command* const found = std::find_if(std::begin(commandTable), std::end(commandTable),
                                              [&](const Command& command) { return command.name == name; });
    if (found == std::end(commandTable)) {
        throw UsageError("'" + name + "' is no command");
    }
    return *found;
}

}  // namespace TrellanTool
