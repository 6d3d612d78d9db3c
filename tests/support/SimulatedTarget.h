// SimulatedTarget: a simulated target of a test's own, named to the platform for the time of a scope.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "support/TempDir.h"

class SimulatedTarget {
public:
    // Writes `document` to target.json in a fresh folder and names it, and a trace file beside it, in the environment
    // (TRELLAN_TARGET, TRELLAN_TRACE). One at a time.
    explicit SimulatedTarget(const nlohmann::ordered_json& document);
    ~SimulatedTarget();
    SimulatedTarget(const SimulatedTarget&) = delete;
    SimulatedTarget& operator=(const SimulatedTarget&) = delete;

    // The folder with the target file, and the target file itself.
    std::filesystem::path folder() const { return directory.path(); }
    std::filesystem::path path() const { return directory.path() / "target.json"; }

    // The target as it is now: its file, read again.
    nlohmann::ordered_json document() const;

    // The traced calls up to now, one for each line of the trace.
    std::vector<nlohmann::ordered_json> trace() const;

private:
    TempDir directory;
};
