// An update on a real clock in three phases, the first and the last of which copy a file to the flash drive; a copy
// takes a while, or as long as a test wants. For what happens in the middle of it.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "support/Process.h"
#include "support/TempDir.h"

class SlowUpdate {
public:
    // Makes target and archive.
    SlowUpdate();

    // Copies of this file ("site.cfg", "hosts.cfg") do not end from now on, until they are released.
    void hold(const std::string& name) const;
    void release(const std::string& name) const;

    // Starts the update; its events and its trace go to the files "events" and "trace".
    RunningProcess start(const std::vector<std::string>& options = {}) const;

    // Starts the shell with a line in which $0 is the tool and "$@" the words of the update.
    RunningProcess startIn(const std::string& shellLine) const;

    // Waits until the copy of this file has begun, and is half done.
    void waitForCopy(const std::string& name) const;

    // Waits until `tool` has said that a signal has come.
    void waitForAnswer(const RunningProcess& tool) const;

    // Whether each of the three is new; what is neither old nor new makes the test fail.
    bool siteIsNew() const { return isNew("site.cfg"); }
    bool firmwareIsNew() const;
    bool hostsAreNew() const { return isNew("hosts.cfg"); }

    // Whether nobody holds the target's lock.
    bool isUnlocked() const;

    // The events of the update up to now that are on whole lines.
    std::vector<nlohmann::json> events() const;

    // The states of its elements that its result names: of site.cfg, of hosts.cfg, of the firmware.
    std::vector<std::string> resultingStates() const;

    std::filesystem::path folder() const { return directory.path(); }

private:
    bool isNew(const std::string& name) const;
    std::vector<std::string> environment() const;

    TempDir directory;
};
