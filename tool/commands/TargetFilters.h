// The filters of a command line, as the target understands them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/commands/Filter.h"

namespace TrellanTool {

class TargetFilters {
public:
    explicit TargetFilters(const ZoNTrellanUpdater::ZoTOptions& options);

    // True when nothing is filtered out.
    bool areOff() const;

    // Takes the elements of `updater`, which was applied, as what there is.
    void note(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector);

    // True when what was noted is all that the filters can mean.
    bool areExplained() const;

    // Adds to the filters of `options` the values of what is meant as it is displayed; false when there is nothing to
    // add.
    bool translate(ZoNTrellanUpdater::ZoTOptions& options) const;

    // What selects nothing, a line for each.
    std::vector<std::string> complaints() const;

private:
    void noteSerialNumber(std::uint32_t number, const std::string& displayed);

    Filter boardTypes;
    Filter serialNumbers;
    Filter elementNames;
};

// Whether the filters have left an element that the target lists.
bool selectElement(ZoITrellanInspector& inspector);

}  // namespace TrellanTool
