// The machine's time of day, as this program sees it.
#pragma once

// Lets the time of day be `seconds` later than it is, for the time of a scope. One at a time.
class LaterTimeOfDay {
public:
    explicit LaterTimeOfDay(long seconds);
    ~LaterTimeOfDay();
    LaterTimeOfDay(const LaterTimeOfDay&) = delete;
    LaterTimeOfDay& operator=(const LaterTimeOfDay&) = delete;
};
