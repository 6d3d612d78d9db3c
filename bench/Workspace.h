// Workspace: a folder for what a benchmark reads, and an updater that prints nothing.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "base/ErrorListHandle.h"
#include "libZoErrorHandling/ZoCErrorList.h"
#include "support/OpenUpdater.h"

class Workspace {
public:
    // Makes a fresh folder, which is removed with the workspace.
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    // Writes `document`, or any other content, to the folder's file `name` and returns its path.
    std::string write(const std::string& name, const nlohmann::json& document) const;

    std::string write(const std::string& name, const char* content) const;

    const std::filesystem::path& path() const { return folder; }

    OpenUpdater& updater() { return *instance; }
    ZoCErrorListPool& errors() { return *errorList; }

private:
    std::filesystem::path folder;
    std::unique_ptr<OpenUpdater> instance;
    ZoNUpdateBase::ErrorListHandle errorList;
};

// A description of an archive with these file entries.
nlohmann::json descriptionOf(nlohmann::json entries);

// A file entry with a version, a checksum and a sequence, and `members`.
nlohmann::json entryOf(const nlohmann::json& members);
