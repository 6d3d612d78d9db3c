// Journal: what an updater tells its host, texts and reports in one order, for the time of a scope.
#pragma once

#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"

class Journal {
public:
    // Installs itself as all four callbacks of `updater` and forgets what an earlier journal has noted. The updater
    // must outlive the journal. One at a time in the process.
    explicit Journal(ZoITrellanUpdater& updater);
    // Switches the callbacks off.
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // The text alone, joined, and as the fragments in which it came.
    std::string text() const;
    const std::vector<std::string>& fragments() const;

    // The reports alone: "phase 0", "failure 2", "progress 50".
    std::vector<std::string> reports() const;

    // Text and reports joined in their order, reports in angle brackets: "[ERROR]\n<failure 2>".
    std::string told() const;

    // Forgets what was noted up to now.
    void clear();

private:
    ZoITrellanUpdater& updater;
};
