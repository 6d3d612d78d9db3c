// The tool, run once for each of the points at which it can fail.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "faults/Device.h"
#include "faults/FaultPoints.h"
#include "support/Process.h"
#include "support/TempDir.h"

// A command line, and what a run of it may end with.
struct ToolRun {
    const char* name;
    std::vector<std::string> arguments;
    int usualStatus;                 // without a fault
    std::vector<int> faultStatuses;  // with one; the usual one too
    unsigned allocationStep;         // of so many points one is tried, where there is no time for all
    unsigned callStep;
    std::vector<std::string> surroundings = {};  // come into its environment
    bool mayBeSilent = false;                    // about what it could not find out
    std::string written = "";                    // a file of the device's folder that it makes whole or not at all
};

inline std::ostream& operator<<(std::ostream& stream, const ToolRun& run)
{
    return stream << run.name;
}

class FaultyTool {
public:
    // In a folder with a device, a plan of its update ("plan") and the events of one that was made ("past").
    FaultyTool();

    // Runs the tool once without a fault, and then for each of its allocations, or of its calls of the system in each
    // way in which they fail; of the former every `step`-th. Returns what is wrong with each of these runs, a sentence
    // for each; and prints how many points there were. A run is right that ends with the usual status and output, or
    // with an error that it has told beside what it says anyway and a status that it may have then; that leaves an
    // element of the target and the file on the drive and the description old or new, and the target unlocked. With the
    // usual status its document and the file that it has written are the usual ones; otherwise that is not there, or
    // has its end. Its events and its trace are whole lines, and all of them, or what is lost is told (LineFiles.h).
    // That no point is reached is wrong, too.
    std::vector<std::string> failEach(FaultPoints::Kind kind, unsigned step, const ToolRun& toolRun);

private:
    struct Outcome {
        ProcessResult result;
        std::string failed;  // what has failed; empty: the point was not reached
        unsigned ways = 0;   // in which that can fail
    };

    Outcome run(const ToolRun& toolRun, FaultPoints::Kind kind, unsigned long number, unsigned way);
    std::vector<std::string> faultsOf(const ToolRun& toolRun, const Outcome& outcome) const;
    std::vector<std::string> faultsOfLines(const ToolRun& toolRun, const ProcessResult& result) const;
    std::string writtenBy(const ToolRun& toolRun) const;  // empty where it is not there
    // The content of the file that the option names; empty where it is not there.
    std::string namedBy(const char* option, const ToolRun& toolRun) const;

    Device device;
    TempDir reports;
    ProcessResult usual;
    bool isUsuallyNew = false;  // the device after a run without a fault
    std::string oldDescription, usualDescription, usuallyWritten, usualEvents, usualTrace;
};
