// Workspace: a folder for what a benchmark reads, and an updater that prints nothing.
#pragma once

#include <memory>
#include <string>

#include "Inputs.h"
#include "base/ErrorListHandle.h"
#include "libZoErrorHandling/ZoCErrorList.h"
#include "support/OpenUpdater.h"
#include "support/TempDir.h"

class Workspace {
public:
    explicit Workspace(const ZoNTrellanUpdater::ZoTOptions& options = {});

    // Writes `text` to the folder's file `name` and returns its path.
    std::string write(const std::string& name, const std::string& text) const;

    // Makes an archive.json for `count` files of the case in the folder, and reads it. Throws std::runtime_error when
    // it is not valid.
    void readArchive(unsigned count, const Members& members);

    // The same for an archive.json that there is.
    void readArchive(const std::filesystem::path& description);

    // Makes the first `count` elements of the case those that the updater has found.
    void makeElements(unsigned count, const Change& change);

    // How many elements have a file.
    double assignedElements();

    OpenUpdater& updater() { return *instance; }
    ZoCErrorListPool& errors() { return *errorList; }

private:
    TempDir folder;
    std::unique_ptr<OpenUpdater> instance;
    ZoNUpdateBase::ErrorListHandle errorList;
};

// Options for a command with archive.json and target.json in `folder`, whose target becomes the process's.
ZoNTrellanUpdater::ZoTOptions optionsFor(ZoNTrellanUpdater::ZoTCommand command, const std::filesystem::path& folder);

// An updater that prints nothing and has carried out apply(). Throws std::runtime_error when the archive or the target
// cannot be read.
std::unique_ptr<OpenUpdater> appliedUpdater(const ZoNTrellanUpdater::ZoTOptions& options);
