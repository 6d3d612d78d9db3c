// A scenario: a folder with a target, an archive and the arguments of the tool's runs, and what those runs print.
//
//   arguments        the tool's arguments, one for each line; a blank line begins another run. {archive} stands for the
//                    archive's folder. --trace is added; the target, where there is one, is in the environment, since
//                    not every command has a use for it.
//   target.json      the simulated target
//   script.json      optional: becomes the target's "script"
//   archive/         the firmware archive
//   flash/           the flash drive's content before the first run; a target names it as "flash"
//   base             optional: name of the scenario whose target.json, archive and flash are used where this has none
//   hold-lock        optional, empty: another process holds the target's lock meanwhile
//   expected.txt     standard output; where there are several runs, each begins with a line "$ trellan-update ..."
//   expected.err     standard error; absent: there is none
//   expected.status  exit statuses, one for each line; absent: 0 each
//   expected.trace   the platform's calls; absent: not compared
//
// In what is compared {folder} stands for the folder that the runs work on, and {time} for a file time.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/TempDir.h"

// What the runs of a scenario gave, in the form in which it is compared.
struct ScenarioResult {
    std::string output;
    std::string errors;
    std::string statuses;
    std::string trace;
};

class Scenario {
public:
    // Copies the scenario `folder` to a fresh folder, in which it runs. Throws std::exception where files are missing.
    explicit Scenario(const std::filesystem::path& folder);

    // Whether the target has a flash drive (which takes a mount namespace of the process's own).
    bool hasFlashDrive() const;

    // Runs the tool `program`, a fresh process for each run.
    ScenarioResult run(const std::filesystem::path& program) const;

private:
    void takeOver(const std::filesystem::path& source) const;
    void addScript() const;
    std::vector<std::vector<std::string>> runs() const;
    std::string normalised(std::string text) const;
    std::filesystem::path inWork(const char* name) const { return work.path() / name; }

    TempDir work;
};
