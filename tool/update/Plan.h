// A plan: the document of a dry run, by which an update goes on only while it still holds.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "json/Json.h"
#include "tool/documents/DryRun.h"

namespace TrellanTool {

// A file is no plan, or not one that can be gone by; what() says why.
class PlanError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Plan {
public:
    // Reads the plan from the file `path`. Throws PlanError where there is none, it is cut short, was edited, has
    // another schema version or tells of an update that was refused. Edited is what has other members or values, in
    // another order, or a member twice; blanks and line ends between them may be others.
    explicit Plan(const std::string& path);

    // In what the update that would be made now differs from the planned one, a line for each; none: the plan holds.
    // Throws PlanError.
    std::vector<std::string> differences(const DryRun& now) const;

private:
    const std::string path;
    TrellanJson::ordered_json document;
};

}  // namespace TrellanTool
