// What is told about an element that an update is to update: in events, in history and at the end of an update.
#pragma once

#include <cstdint>
#include <string>

namespace TrellanTool {

struct UpdateElement {
    std::uint32_t index = 0;  // by which the library names it
    std::string name;
    std::string from;         // the installed version; empty when not known
    std::string to;           // the version of its update file; empty when not known
    std::uint32_t phase = 0;  // in which it is updated, from 0
};

}  // namespace TrellanTool
