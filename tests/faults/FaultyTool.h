// The tool, run once for each of the points at which it can fail.
#pragma once

#include <string>
#include <vector>

#include "faults/Device.h"
#include "faults/FaultPoints.h"
#include "support/Process.h"
#include "support/TempDir.h"

class FaultyTool {
public:
    // Runs the tool with these arguments once without a fault, and then for each of its allocations, or of its calls of
    // the system in each way in which they fail; of the former every `step`-th. Returns what is wrong with each of
    // these runs, a sentence for each; and prints how many points there were. A run is right that ends as the one
    // without a fault and with the same output, or with an error that it has told; that leaves an element of the target
    // and the file on the drive old or new, and the target unlocked. `surroundings` come into the tool's environment.
    std::vector<std::string> failEach(FaultPoints::Kind kind, unsigned step, const std::vector<std::string>& arguments,
                                      const std::vector<std::string>& surroundings = {});

private:
    struct Outcome {
        ProcessResult result;
        std::string failed;  // what has failed; empty: the point was not reached
        unsigned ways = 0;   // in which that can fail
    };

    Outcome run(FaultPoints::Kind kind, unsigned long number, unsigned way);
    std::vector<std::string> faultsOf(const Outcome& outcome) const;

    Device device;
    TempDir reports;
    std::vector<std::string> arguments;
    std::vector<std::string> surroundings;
    ProcessResult usual;
    bool isUsuallyNew = false;  // the device after a run without a fault
};
