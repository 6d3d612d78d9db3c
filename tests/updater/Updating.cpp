#include "Updating.h"

#include <memory>

using nlohmann::ordered_json;
using namespace ZoNTrellanUpdater;

ordered_json processorBoard(std::vector<ordered_json> elements, std::vector<ordered_json> items)
{
    return board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Processor board"}}, elements, items);
}

ordered_json installedFirmware(unsigned id)
{
    return updateElement(id, {{"NAME", "UserFirmware"}, {"VERSION", "23.2"}, {"CHECKSUM_CRC32", 5}});
}

ordered_json processorTarget()
{
    return target({processorBoard({installedFirmware()})});
}

ordered_json firmwareEntry(ordered_json overrides)
{
    ordered_json entry = fileEntry("firmware.bin", {{"version", "23.3"}});
    entry.update(overrides);
    return entry;
}

std::vector<std::string> afterBanner(const MessageCapture& capture)
{
    const std::vector<std::string>& all = capture.fragments();
    EXPECT_FALSE(all.empty()) << "no banner";
    return {all.begin() + (all.empty() ? 0 : 1), all.end()};
}

std::vector<ordered_json> callsOf(const std::string& name, const std::vector<ordered_json>& trace)
{
    std::vector<ordered_json> calls;
    for (const ordered_json& call : trace) {
        if (call.at("call") == name) {
            calls.push_back(call);
        }
    }
    return calls;
}

std::vector<ZoTUpdateElement> elementsOf(ZoITrellanUpdater& updater)
{
    ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    const std::unique_ptr<ZoTUpdateElement[]> owner(list);
    return {list, list + count};
}

std::vector<ZoTUpdateFile> filesOf(ZoITrellanUpdater& updater)
{
    ZoTUpdateFile* list = nullptr;
    unsigned count = 0;
    updater.getUpdateFileList(list, count);
    const std::unique_ptr<ZoTUpdateFile[]> owner(list);
    return {list, list + count};
}
