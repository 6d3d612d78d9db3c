#include "tool/documents/Document.h"

#include <memory>
#include <nlohmann/json.hpp>

namespace TrellanTool {

namespace {

using nlohmann::ordered_json;
using ZoNTrellanUpdater::ZoTUpdateElement;
using ZoNTrellanUpdater::ZoTUpdateFile;

ordered_json installedElement(const ZoTUpdateElement& element)
{
    return {{"index", element.index},
            {"boardType", element.boardType},
            {"serialNumber", element.serialNumber},
            {"boardName", element.boardName},
            {"unitDescription", element.unitDescription},
            {"slot", element.slot},
            {"slotCount", element.slotCount},
            {"displayName", element.displayName},
            {"displayType", element.displayType},
            {"isFileSystemElement", element.isFileSystemElement},
            {"valid", element.valid},
            {"active", element.active},
            {"installedVersion", element.installedVersion},
            {"custom", element.custom},
            {"disabled", element.disabled}};
}

ordered_json comparedElement(const ZoTUpdateElement& element)
{
    ordered_json compared = installedElement(element);
    compared["phase"] = element.phase;
    compared["hasUpdateFile"] = element.hasUpdateFile;
    compared["updateFileIndex"] = element.updateFileIndex;
    compared["availableVersion"] = element.availableVersion;
    compared["checksumDiffers"] = element.checksumDiffers;
    return compared;
}

ordered_json elements(ZoITrellanUpdater& updater, ordered_json (*describe)(const ZoTUpdateElement&))
{
    ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    const std::unique_ptr<ZoTUpdateElement[]> owner(list);
    ordered_json result = ordered_json::array();
    for (unsigned i = 0; i < count; ++i) {
        result.push_back(describe(list[i]));
    }
    return result;
}

ordered_json archive(ZoITrellanUpdater& updater)
{
    std::string name, version, productName, formatVersion, variant;
    updater.getArchiveInfo(name, version, productName, formatVersion, variant);
    return {{"name", name},
            {"version", version},
            {"productName", productName},
            {"formatVersion", formatVersion},
            {"variant", variant}};
}

ordered_json files(ZoITrellanUpdater& updater)
{
    ZoTUpdateFile* list = nullptr;
    unsigned count = 0;
    updater.getUpdateFileList(list, count);
    const std::unique_ptr<ZoTUpdateFile[]> owner(list);
    ordered_json result = ordered_json::array();
    for (unsigned i = 0; i < count; ++i) {
        result.push_back({{"name", list[i].name}, {"version", list[i].version}});
    }
    return result;
}

}  // namespace

std::string document(ZoITrellanUpdater& updater, const std::string& name, std::uint32_t command)
{
    ordered_json content = {{"command", name}};
    if (command == ZoNTrellanUpdater::PRINT_ARCHIVE) {
        content["archive"] = archive(updater);
        content["files"] = files(updater);
    } else {
        const bool compared = command == ZoNTrellanUpdater::COMPARE_VERSIONS;
        content["elements"] = elements(updater, compared ? comparedElement : installedElement);
    }
    return content.dump(2, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace TrellanTool
