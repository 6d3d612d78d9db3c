// Progress where no line can be written over: a line for each phase and each tenth of it.
#pragma once

#include <string>

namespace TrellanTool {

class TenthLines {
public:
    // A phase begins, counted from 0.
    void beginPhase(unsigned number);

    // The phase is at `percent`. Returns the line to print, with its end, as "Phase 0:  40%\n"; empty where that
    // tenth, or a later one, was already reached.
    std::string report(unsigned percent);

private:
    unsigned phase = 0;
    unsigned nextTenth = 0;
};

}  // namespace TrellanTool
