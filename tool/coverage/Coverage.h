// What an archive does for many targets.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "tool/coverage/TargetReport.h"

namespace TrellanTool {

class Coverage {
public:
    // Elements of a target that are of one kind and in one state.
    struct Cell {
        std::uint32_t kind;           // by its number
        std::uint32_t state : 3;      // position in statesBefore
        std::uint32_t elements : 29;  // at least 1
    };

    struct Target {
        std::string name;
        std::optional<std::string> error;  // why it cannot be read; then nothing else counts
        bool isSupported = false;
        bool isWhole = true;  // false: something of it could not be read
        StateCounts counts{};
        std::vector<Cell> cells;
    };

    // Elements with the same keys, of all targets.
    struct Kind {
        std::string keys;  // as JSON (keysRecord)
        std::uint64_t elements = 0;
        std::uint64_t withoutFile = 0;
        std::uint32_t targetsWithoutFile = 0;  // targets that have such elements
        std::set<std::uint32_t> files;         // positions of the update files that they get
    };

    // An update file of the archive.
    struct File {
        std::uint32_t entry;  // position in "files" of the description
        std::string name;
        std::string version;
        std::uint64_t elements = 0;  // that get it
    };

    // For targets with these names, and the update files that `archive` has read. Without cells less is kept of each
    // target: nothing that grows with its kinds.
    Coverage(const std::vector<std::string>& targetNames, ZoITrellanInspector& archive, bool withCells);

    // Takes what is known of the target at this position. Each once; in any order, on which nothing depends but the
    // numbers of kinds.
    void take(std::size_t target, const TargetReport& report);
    void takeUnread(std::size_t target, const std::string& error);

    const std::vector<Target>& targets() const { return allTargets; }
    const std::vector<File>& files() const { return allFiles; }
    const std::vector<Kind>& kinds() const { return allKinds; }

    // The numbers of the kinds in the order of their keys.
    std::vector<std::uint32_t> orderedKinds() const;

    // How many targets could be read, and how many of them the archive supports.
    std::size_t readTargets() const;
    std::size_t supportedTargets() const;

    // Whether all targets could be read, and all of each.
    bool isWhole() const;

private:
    std::uint32_t numberOf(const std::string& keys);

    const bool withCells;
    std::vector<Target> allTargets;
    std::vector<File> allFiles;
    std::vector<Kind> allKinds;
    std::unordered_map<std::string, std::uint32_t> numbers;  // of kinds, by their keys
};

}  // namespace TrellanTool
