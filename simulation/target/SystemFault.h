// Refusals of the operating system.
#pragma once

#include <cerrno>
#include <string>
#include <system_error>

#include "simulation/base/FileDescriptor.h"

namespace TrellanSimulation {

// Throws a std::system_error that says "OPERATION: REASON", the reason being that of errno.
[[noreturn]] inline void throwSystemFault(const std::string& operation)
{
    throw std::system_error(errno, std::generic_category(), operation);
}

// Throws as above when `result` says that the operation failed (is negative); gives it back otherwise.
inline int checkSystem(int result, const std::string& operation)
{
    if (result < 0) {
        throwSystemFault(operation);
    }
    return result;
}

// The same of a file that is not open. What is open is closed also when memory is too short for the operation's text.
inline FileDescriptor checkSystem(FileDescriptor file, const std::string& operation)
{
    if (!file.isOpen()) {
        throwSystemFault(operation);
    }
    return file;
}

}  // namespace TrellanSimulation
