// The runs of updates that a file of events tells of.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "json/Json.h"

namespace TrellanTool {

struct HistoryElement {
    std::uint32_t index = 0;
    std::string name;
    std::string from;   // the installed version; empty when not known
    std::string to;     // the available one; empty when not known
    std::string state;  // after the update; empty when not known
    TrellanJson::ordered_json errors = TrellanJson::ordered_json::array();  // as the event has them
};

struct HistoryArchive {
    std::string path;
    std::string version;
};

struct HistoryRun {
    std::string run;                        // which tells it from the other runs
    std::string time;                       // of its first event
    std::optional<HistoryArchive> archive;  // nothing where the start is missing
    std::string result = "interrupted";     // or "success", "failed", "stalled" or "refused"
    bool hasResult = false;                 // false: it ended without a word
    std::optional<unsigned> phase;          // the last one that it has begun
    std::vector<HistoryElement> elements;   // that it was to update
};

struct History {
    std::vector<HistoryRun> runs;         // in the order in which they began
    std::vector<std::string> complaints;  // about lines that were skipped, in the order of the file
};

// The file of events cannot be read; what() names it and says why.
class HistoryError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads the file of events `path`. Throws HistoryError.
History readHistory(const std::string& path);

// One line for each run.
std::string historyText(const History& history);

// A run as the document of the command shows it.
TrellanJson::ordered_json historyRecord(const HistoryRun& run);

}  // namespace TrellanTool
