// Labels of elements, and membership in the lists of names that options hold.
#include <string_view>

#include "base/PlatformText.h"
#include "inventory/ZoCUpdateInventory.h"

using namespace ZoNUpdateBase;

namespace {

struct DisplayType {
    std::string_view elementName;
    bool isPrefix;
    const char* displayType;
};

constexpr DisplayType displayTypes[] = {
    {"UserFirmware", false, "Firmware"}, {"CnFirmware", false, "Firmware"}, {"HypervisorFirmware", false, "Hypervisor"},
    {"UserFpga", false, "FPGA"},         {"IoFpga", true, "FPGA"},          {"UserIpl", false, "Bootloader"},
    {"CnIpl", false, "Bootloader"},      {"UserCpld", false, "CPLD"},       {"IoCpld", false, "CPLD"},
};

ZoCString displayTypeOf(const ZoCString& elementName)
{
    const std::string_view name(elementName.c_str(), elementName.length());
    for (const DisplayType& type : displayTypes) {
        if (type.isPrefix ? name.starts_with(type.elementName) : name == type.elementName) {
            return type.displayType;
        }
    }
    return elementName;
}

bool isSeparator(char character)
{
    return character == ' ' || character == ',';
}

}  // namespace

void ZoCUpdateInventory::generateDisplayString(const ZoCString& boardName, const ZoCString& boardType,
                                               unsigned int serialNumber, const ZoCString& name, ZoCString& displayType,
                                               ZoCString& displayName)
{
    const ZoCString type = displayTypeOf(name);
    std::string label = allText(boardName.isEmpty() ? boardType : boardName);
    if (serialNumber != 0) {
        label += ", SN " + allText(displayedSerialNumber(serialNumber));
    }
    label += ", " + allText(type);
    displayType = type;
    displayName = platformText(label);
}

ZoCString ZoCUpdateInventory::displayedSerialNumber(unsigned int serialNumber)
{
    if (serialNumber == 0) {
        return ZoCString();
    }
    ZoCString displayed(serialNumber & 0xFFFFFF);
    if (const unsigned series = serialNumber >> 24; series != 0) {
        displayed += "(";
        displayed += ZoCString(series);
        displayed += ")";
    }
    return displayed;
}

bool ZoCUpdateInventory::stringListContains(const std::string& list, const std::string& item)
{
    if (item.empty()) {
        return true;
    }
    for (std::size_t at = list.find(item); at != std::string::npos; at = list.find(item, at + 1)) {
        const std::size_t end = at + item.size();
        const bool startsToken = at == 0 || isSeparator(list[at - 1]);
        const bool endsToken = end == list.size() || isSeparator(list[end]);
        if (startsToken && endsToken) {
            return true;
        }
    }
    return false;
}
