// How many of the points a run of all tests has time for.
#pragma once

#include <cstdlib>
#include <string_view>

// Each of a run's points with TRELLAN_FAULTS=all, which "./dev faults" sets; else as many as a run of all tests has
// time for.
inline unsigned stepOf(unsigned usual)
{
#if defined(__SANITIZE_ADDRESS__)
    usual *= 10;
#endif
    const char* const wanted = std::getenv("TRELLAN_FAULTS");
    return wanted != nullptr && std::string_view(wanted) == "all" ? 1 : usual;
}
