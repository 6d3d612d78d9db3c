// FuzzedTarget: a target file as the fuzzer has made it, named to the platform for the time of a scope.
#pragma once

#include <string>

class FuzzedTarget {
public:
    // Writes `text` to target.json in a folder that holds a folder "drive" beside it, and begins its script anew.
    explicit FuzzedTarget(const std::string& text);
    ~FuzzedTarget();
    FuzzedTarget(const FuzzedTarget&) = delete;
    FuzzedTarget& operator=(const FuzzedTarget&) = delete;

    const std::string& path() const { return file; }

private:
    std::string file;
};

// The text of a target that can be updated without harm: one whose clock is not virtual, so that updates would be
// waited for, or whose flash drive is not the folder "drive", so that anything might be written to, is given both. What
// is no JSON object stays as it is.
std::string harmless(const std::string& text);
