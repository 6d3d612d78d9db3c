// What an archive does for one target, in short.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/documents/ElementOutcome.h"

namespace TrellanTool {

// How many elements are in each of the states before an update.
using StateCounts = std::array<std::uint32_t, statesBefore.size()>;

// The elements of a target that have the same keys.
struct KindReport {
    std::string keys;  // as JSON (keysRecord)
    StateCounts counts{};
    std::map<std::uint32_t, std::uint32_t> files;  // how many elements get the update file at this position
};

struct TargetReport {
    std::optional<std::string> error;  // why the target cannot be read; then nothing else counts
    bool isSupported = false;
    bool isWhole = true;                  // false: something of it could not be read, as the notes say
    std::vector<KindReport> kinds;        // each once
    std::vector<std::string> notes;       // what is to be said of this target, each once
    std::vector<std::string> complaints;  // what is to be said where it holds for all targets
};

// What is known of the target that `inspector` has read, its kinds and whether it is supported.
TargetReport reportOf(ZoITrellanInspector& inspector);

// A report as bytes, and back. The second throws TrellanJson::json::exception for what the first has not given.
std::string packed(const TargetReport& report);
TargetReport unpacked(const std::string& bytes);

}  // namespace TrellanTool
