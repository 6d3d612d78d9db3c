// The three filters together: what they note of each element, and what they come to.
#include "tool/commands/TargetFilters.h"

#include <memory>
#include <utility>

namespace TrellanTool {

using ZoNTrellanInspector::ZoTElement;
using ZoNTrellanUpdater::ZoTUpdateElement;

TargetFilters::TargetFilters(const ZoNTrellanUpdater::ZoTOptions& options)
    : boardTypes("board type", options.boardTypes),
      serialNumbers("serial number", options.serialNumbers),
      elementNames("element name", options.elementNames)
{
}

bool TargetFilters::areOff() const
{
    return boardTypes.isOff() && serialNumbers.isOff() && elementNames.isOff();
}

void TargetFilters::note(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector)
{
    ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    const std::unique_ptr<ZoTUpdateElement[]> owner(list);
    for (unsigned i = 0; i < count; ++i) {
        const ZoTElement& element = inspector.getElement(i);
        if (element.isListed) {
            boardTypes.note(list[i].boardType, "");
            noteSerialNumber(list[i].serialNumber, element.displayedSerialNumber);
            elementNames.note(element.name, list[i].displayType);
        }
    }
}

void TargetFilters::noteSerialNumber(std::uint32_t number, const std::string& displayed)
{
    if (displayed.empty()) {
        serialNumbers.noteNone(std::to_string(number));
    } else {
        serialNumbers.note(std::to_string(number), displayed);
    }
}

bool TargetFilters::areExplained() const
{
    return boardTypes.isExplained(true) && serialNumbers.isExplained(true) && elementNames.isExplained(false);
}

bool TargetFilters::translate(ZoNTrellanUpdater::ZoTOptions& options) const
{
    const std::string serialNumbersBefore = std::exchange(options.serialNumbers, serialNumbers.withDisplayedMeant());
    const std::string elementNamesBefore = std::exchange(options.elementNames, elementNames.withDisplayedMeant());
    return options.serialNumbers != serialNumbersBefore || options.elementNames != elementNamesBefore;
}

std::vector<std::string> TargetFilters::complaints() const
{
    std::vector<std::string> lines;
    for (const Filter* const filter : {&boardTypes, &serialNumbers, &elementNames}) {
        const std::vector<std::string> more = filter->complaints();
        lines.insert(lines.end(), more.begin(), more.end());
    }
    return lines;
}

bool selectElement(ZoITrellanInspector& inspector)
{
    for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
        if (inspector.getElement(i).isListed) {
            return true;
        }
    }
    return false;
}

}  // namespace TrellanTool
