// An update session: the locked target and the updates that were started on it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "simulation/base/Clock.h"
#include "simulation/target/TargetFile.h"
#include "simulation/target/TargetLock.h"
#include "simulation/target/UpdateContent.h"

namespace TrellanSimulation {

// How an update stands.
struct UpdateProgress {
    unsigned status = 0;  // 0: none was started; 1: running; 2: finished
    unsigned done = 0;    // bytes
    unsigned total = 0;   // bytes
};

class UpdateSession {
public:
    // A session on the target file at `path` (absolute, without symbolic links), read as `file` under `lock`.
    UpdateSession(const std::filesystem::path& path, std::unique_ptr<TargetFile> file, std::unique_ptr<TargetLock> lock,
                  unsigned handle);

    TargetFile& file() { return *target; }

    // Of the target file, absolute and without symbolic links.
    const std::filesystem::path& path() const { return targetPath; }

    // What the session's caller knows it by.
    unsigned handle() const { return lockHandle; }

    // Starts the update of the element `key`, which the target must have, with the file of this content; an update of
    // it that was started before is forgotten.
    void start(const std::string& key, const UpdateContent& content);

    bool isStarted(const std::string& key) const { return updates.contains(key); }

    // How far the started update of the element `key` has come by the clock.
    UpdateProgress progress(const std::string& key) const;

    // The started update of the element `key` as it stands when it has finished.
    UpdateProgress finishedProgress(const std::string& key) const;

    // Gives the element `key`, whose update was started, its new values, once for each update. On a real clock they are
    // in the target file before time passes again, so that a process that dies leaves the device as far as it had come;
    // where the file cannot be written then, it is tried again at the next sleep.
    void finish(const std::string& key);

private:
    void trySaving();

    struct Update {
        UpdateContent content;
        std::uint64_t startTime = 0;
        bool finished = false;
    };

    std::unique_ptr<TargetLock> lock;
    std::filesystem::path targetPath;
    std::unique_ptr<TargetFile> target;
    unsigned lockHandle;
    std::unordered_map<std::string, Update> updates;
    std::optional<WorkBeforeSleep> saving;  // on a real clock
};

}  // namespace TrellanSimulation
