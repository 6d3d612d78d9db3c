// A host's whole work with the library: everything is read and asked for, and the target is updated.
#pragma once

#include <string>

#include "ZoITrellanUpdater.h"

// How far it has come.
struct HostWork {
    static constexpr unsigned notApplied = 99;
    static constexpr int notRun = -1;

    unsigned applied = notApplied;  // what apply() has returned
    int ran = notRun;               // what run() has returned
    bool threwBadAlloc = false;
    bool threwOther = false;
};

// Does it. From its end on no fault point is chosen any more.
HostWork workAsHost(const ZoNTrellanUpdater::ZoTOptions& options);

// What the library has printed in the last one. Its room is made beforehand, so that the host's own allocations are not
// among the points.
std::string& printed();

// Whether that has the words with which the results must come.
bool isSaid(const HostWork& work);
