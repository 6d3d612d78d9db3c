// Refusals of the operating system.
#pragma once

#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

// Throws a std::system_error that says "OPERATION PLACE: REASON", or "OPERATION: REASON" without a place; the reason is
// that of errno.
[[noreturn]] inline void throwSystemFault(std::string_view operation, std::string_view place = {})
{
    const int reason = errno;  // before anything else can change it
    std::string text(operation);
    if (!place.empty()) {
        text.append(" ").append(place);
    }
    throw std::system_error(reason, std::generic_category(), text);
}

// Throws as above when `result` says that the operation failed (is negative); gives it back otherwise. Nothing can go
// wrong with an operation that has succeeded: no text is made for it, as memory could be too short for that.
inline int checkSystem(int result, std::string_view operation, std::string_view place = {})
{
    if (result < 0) {
        throwSystemFault(operation, place);
    }
    return result;
}

// The same of a file that is not open.
inline FileDescriptor checkSystem(FileDescriptor file, std::string_view operation, std::string_view place = {})
{
    if (!file.isOpen()) {
        throwSystemFault(operation, place);
    }
    return file;
}

}  // namespace TrellanSimulation
