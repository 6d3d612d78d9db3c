// The files of a run of the tool to which a line of JSON is appended for each event: that of the update, and the trace
// of the platform's calls.
#pragma once

#include <string>
#include <vector>

// How a run with a fault has ended.
struct LinesExpected {
    bool asUsual = false;   // all that was printed, and the exit status, are those of a run without a fault
    bool lossTold = false;  // it has said that lines are lost
};

// What is wrong with the content of such a file, a sentence for each. It is right when each line is whole, the last one
// too, and an object that begins with "time", "run" and "event"; where all is as usual, the events follow
// one another as they do in `usual`. Where no loss is told, a file of an update that has begun ends with its
// result.
std::vector<std::string> faultsOfEvents(const std::string& text, const std::string& usual, LinesExpected expected);

// The same of a trace, whose lines begin with "call", and which ends as it happens.
std::vector<std::string> faultsOfTrace(const std::string& text, const std::string& usual, LinesExpected expected);
