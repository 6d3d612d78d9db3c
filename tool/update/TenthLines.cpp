#include "tool/update/TenthLines.h"

#include <cstdio>

namespace TrellanTool {

void TenthLines::beginPhase(unsigned number)
{
    phase = number;
    nextTenth = 0;
}

std::string TenthLines::report(unsigned percent)
{
    const unsigned tenth = percent / 10;
    if (tenth < nextTenth) {
        return "";
    }
    nextTenth = tenth + 1;
    char line[64];
    std::snprintf(line, sizeof line, "Phase %u: %3u%%\n", phase, tenth * 10);
    return line;
}

}  // namespace TrellanTool
