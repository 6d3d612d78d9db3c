// Waiting for what another process or thread does.
#pragma once

#include <chrono>
#include <thread>

// Waits until `condition` holds; false when it still does not after a time that is plenty for a busy machine too.
template <typename Condition>
bool comesTrue(const Condition& condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(40);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}
