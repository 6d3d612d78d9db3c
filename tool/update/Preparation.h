// All that happens before an update, or a dry run of it: up to the moment in which the target would be locked.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tool/commands/LibrarySession.h"
#include "tool/documents/DryRun.h"
#include "tool/documents/Findings.h"

namespace TrellanTool {

class Preparation {
public:
    // For `session`, which was made for `arguments`. Both must outlive the preparation.
    Preparation(const Arguments& arguments, LibrarySession& session);

    // Has the session read archive and target, checks the files that are to be used, and holds a plan that was given
    // against what is to be done. What speaks against it is said on `err`, and warnings too. Returns SUCCESS, NOT_READ,
    // NOT_SUPPORTED, NOTHING_SELECTED or REFUSED. To be called once.
    int prepare(std::ostream& err);

    // What was said about why prepare() has returned something else; empty after SUCCESS.
    const std::string& refusal() const { return said; }

    // What the check has found.
    const std::vector<Finding>& findings() const { return found; }

    // What the update would do. Not after NOT_READ.
    DryRun dryRun() const;

private:
    bool check(std::ostream& err);
    bool planHolds(std::ostream& err);
    void complain(std::ostream& err, const std::string& text);

    const Arguments& arguments;
    LibrarySession& session;
    std::string description;  // the text of the archive's description
    std::vector<Finding> found;
    std::string said;
};

}  // namespace TrellanTool
