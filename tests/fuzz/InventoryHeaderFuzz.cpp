// Fuzz entry for update files that carry an inventory tree: what the reader gives of one is what stands in its JSON,
// and a plain one is taken.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "Fuzzing.h"
#include "archive/ZoCUpdateArchive.h"
#include "simulation/base/Resources.h"

using nlohmann::json;

namespace {

constexpr std::uint32_t none = 0xFFFFFFFE;

std::uint32_t numberIn(const json& object, const char* name)
{
    const auto value = object.find(name);
    const bool isNumber = value != object.end() && value->is_number_unsigned() && *value <= 0xFFFFFFFF;
    return isNumber ? value->get<std::uint32_t>() : none;
}

// Versions are 64 bits wide; the text of one that is none, or that holds a NUL, is the empty version.
std::uint64_t versionIn(const json& object, const char* name)
{
    const auto value = object.find(name);
    if (value == object.end() || !value->is_string()) {
        return none;
    }
    const auto& text = value->get_ref<const std::string&>();
    return text.find('\0') == std::string::npos ? ZoCVersion(text.c_str()).getAsULong64() : 0;
}

template <std::size_t count>
bool hasNoneBut(const json& object, const std::string_view (&names)[count])
{
    return object.is_object() && std::all_of(object.items().begin(), object.items().end(), [&](const auto& member) {
               return std::find(std::begin(names), std::end(names), member.key()) != std::end(names);
           });
}

bool arePlainParameters(const json& parameters)
{
    return hasNoneBut(parameters, {"FIRMWARE/MIN_HW_COMPATIBILITY_ID", "FIRMWARE/MAX_HW_COMPATIBILITY_ID",
                                   "FIRMWARE/MIN_SW_COMPATIBILITY_ID", "FIRMWARE/MAX_SW_COMPATIBILITY_ID",
                                   "FIRMWARE/TYPE_ID", "FIRMWARE/CHECKSUM_CRC32", "FIRMWARE/VERSION"}) &&
           std::all_of(parameters.begin(), parameters.end(),
                       [](const json& value) { return value.is_string() || value.is_number(); });
}

// An item with names that are some of those that there are, and with few levels of others below it.
bool isPlainItem(const json& item, unsigned levels)
{
    if (levels == 0 || !hasNoneBut(item, {"id", "parameters", "items"}) || !item.contains("id")) {
        return false;
    }
    const bool hasPlainId = item["id"] == "ROOT" || item["id"] == "HCN" || item["id"] == "CN[2]";
    const json items = item.value("items", json::array());
    return hasPlainId && arePlainParameters(item.value("parameters", json::object())) && items.is_array() &&
           std::all_of(items.begin(), items.end(), [&](const json& below) { return isPlainItem(below, levels - 1); });
}

bool isPlainTree(const json& document)
{
    return hasNoneBut(document, {"inventoryTree", "checksumCrc32"}) && document.contains("inventoryTree") &&
           isPlainItem(document["inventoryTree"], 8) &&
           (!document.contains("checksumCrc32") || numberIn(document, "checksumCrc32") != none);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    std::uint32_t minHw = 0, maxHw = 0, minSw = 0, maxSw = 0, typeId = 0, checksum = 0;
    ZoCVersion version;
    const int result =
        ZoCUpdateArchive::readUpdateFileInventory(file.path(), minHw, maxHw, minSw, maxSw, typeId, checksum, version);
    const auto left = TrellanSimulation::resources();
    require(left.inventoryTrees == 0 && left.errorLists == 0, "nothing is left over");
    require(result == 0 || result == 1, "a result");
    const json document = json::parse(data, data + size, nullptr, false);
    if (result == 1) {
        const bool hasNul = std::find(data, data + size, 0) != data + size;  // to the other parser the end of the text
        require(hasNul || !isPlainTree(document), "a plain tree is taken");
        return 0;
    }
    require(document.is_object() && document.contains("inventoryTree"), "a tree stands in a JSON object");
    const json parameters = document["inventoryTree"].value("parameters", json::object());
    require(minHw == numberIn(parameters, "FIRMWARE/MIN_HW_COMPATIBILITY_ID"), "minimum of the hardware");
    require(maxHw == numberIn(parameters, "FIRMWARE/MAX_HW_COMPATIBILITY_ID"), "maximum of the hardware");
    require(minSw == numberIn(parameters, "FIRMWARE/MIN_SW_COMPATIBILITY_ID"), "minimum of the software");
    require(maxSw == numberIn(parameters, "FIRMWARE/MAX_SW_COMPATIBILITY_ID"), "maximum of the software");
    require(typeId == numberIn(parameters, "FIRMWARE/TYPE_ID"), "type id");
    require(version.getAsULong64() == versionIn(parameters, "FIRMWARE/VERSION"), "version");
    const bool isStated = document.contains("checksumCrc32");
    require(
        checksum == (isStated ? numberIn(document, "checksumCrc32") : numberIn(parameters, "FIRMWARE/CHECKSUM_CRC32")),
        "the checksum of the file, or else of the tree");
    return 0;
}
