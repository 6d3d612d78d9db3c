// Journal: what an updater tells its host, texts and reports, for the time of a scope.
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

    // The reports: "phase 0", "failure 2", "progress 50", "end of phases".
    std::vector<std::string> reports() const;

    // The texts, one for each call, and joined.
    std::vector<std::string> fragments() const;
    std::string text() const;

    // Texts and reports in one order, reports in angle brackets: "[ERROR]\n", "<failure 2>"; and joined.
    std::vector<std::string> events() const;
    std::string told() const;

    // Forgets what was noted up to now.
    void clear();

private:
    ZoITrellanUpdater& updater;
};
