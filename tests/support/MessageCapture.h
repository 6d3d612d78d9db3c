// MessageCapture: takes an updater's text for the time of a scope.
#pragma once

#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"

class MessageCapture {
public:
    // Installs itself as the updater's message callback and forgets what an earlier capture has taken. The updater must
    // outlive the capture. One at a time in the process.
    explicit MessageCapture(ZoITrellanUpdater& updater);
    // Switches the callback off.
    ~MessageCapture();
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;

    // What the callback was given, one entry for each call.
    const std::vector<std::string>& fragments() const;

    // All fragments, joined.
    std::string text() const;

    // Forgets what was taken up to now.
    void clear();

private:
    ZoITrellanUpdater& updater;
};
