// A copy of examples/ in which the commands of a document are run.
#pragma once

#include <filesystem>
#include <string>

#include "support/Process.h"
#include "support/TempDir.h"

class ExampleFolder {
public:
    // The copy's target is on a virtual clock, so that no update takes time.
    ExampleFolder();

    const std::filesystem::path& path() const { return folder.path(); }

    // Writes `content` to the file `name` (relative; parent folders are made).
    void write(const std::string& name, const std::string& content) const { folder.write(name, content); }

    // Runs a shell's command line in the folder; the tool is found by its name. The environment is PATH alone.
    ProcessResult run(const std::string& command) const;

private:
    TempDir folder;
};
