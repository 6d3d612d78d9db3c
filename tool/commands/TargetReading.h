// One target after another, held against an archive that was read.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tool/commands/LibrarySession.h"
#include "tool/coverage/TargetReport.h"

namespace TrellanTool {

struct Arguments;

class TargetReading {
public:
    // `session` has read the archive; what is asked for of each target stands in `asked`. Both must outlive this.
    TargetReading(const Arguments& asked, LibrarySession& session) : asked(asked), session(session) {}

    // Reads the target file; nothing where this process may be the reason why that is not what it would be in a new
    // one. For a process that ends with it: its standard error is silenced, and the session's text is lost. `isFirst`:
    // it has read no target yet. Throws std::system_error, and what the library throws.
    std::optional<TargetReport> read(const std::string& path, bool isFirst);

private:
    std::vector<std::string> exclude();
    TargetReport readAsDisplayed(const std::string& path) const;

    const Arguments& asked;
    LibrarySession& session;
    std::filesystem::path last;  // the target that was read last
};

// What is asked for, for a command of the library.
Arguments forCommand(const Arguments& asked, const char* name);

}  // namespace TrellanTool
