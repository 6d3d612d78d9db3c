// Fuzz entry for update files that carry an inventory tree: what the reader gives of one is what stands in its JSON.
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
    if (result == 1) {
        return 0;
    }
    const json document = json::parse(data, data + size, nullptr, false);
    require(document.is_object() && document.contains("inventoryTree"), "a tree stands in a JSON object");
    const json parameters = document["inventoryTree"].value("parameters", json::object());
    require(minHw == numberIn(parameters, "FIRMWARE/MIN_HW_COMPATIBILITY_ID"), "minimum of the hardware");
    require(maxHw == numberIn(parameters, "FIRMWARE/MAX_HW_COMPATIBILITY_ID"), "maximum of the hardware");
    require(minSw == numberIn(parameters, "FIRMWARE/MIN_SW_COMPATIBILITY_ID"), "minimum of the software");
    require(maxSw == numberIn(parameters, "FIRMWARE/MAX_SW_COMPATIBILITY_ID"), "maximum of the software");
    require(typeId == numberIn(parameters, "FIRMWARE/TYPE_ID"), "type id");
    const bool isStated = document.contains("checksumCrc32");
    require(
        checksum == (isStated ? numberIn(document, "checksumCrc32") : numberIn(parameters, "FIRMWARE/CHECKSUM_CRC32")),
        "the checksum of the file, or else of the tree");
    return 0;
}
