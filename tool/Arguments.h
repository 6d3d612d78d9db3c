// The command line: commands, options, and what they mean for the library.
#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"

namespace TrellanTool {

// What the command line asks for.
struct Arguments {
    std::string help;                       // when not empty, print this text and do nothing else
    std::string command;                    // name of the command
    ZoNTrellanUpdater::ZoTOptions options;  // archivePath is absolute, or empty where the command takes no archive
    std::vector<std::uint32_t> excluded;    // indices of elements to leave out of the update, in the order given
    std::optional<std::string> targetFile;  // value for TRELLAN_TARGET, absolute
    std::optional<std::string> traceFile;   // value for TRELLAN_TRACE, absolute
    bool json = false;                      // print a JSON document in place of the library's text
    bool hasElements = false;               // the command reads the target's update elements
    bool rebootSupport = false;             // tell whether the device can be rebooted automatically
};

// The command line is not understood; what() names the mistake.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads a command line; argv[0] is passed over. Throws UsageError.
Arguments parseArguments(int argc, const char* const* argv);

}  // namespace TrellanTool
