// Fuzz entry for the platform's JSON: what is a document, which value it has, and how that is written, are held against
// another parser.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "Fuzzing.h"
#include "libZoJsonLib/ZoNJson.h"

static std::size_t levelsOf(const nlohmann::json& value)
{
    std::size_t below = 0;
    for (const nlohmann::json& part : value.is_structured() ? value : nlohmann::json::array()) {
        below = std::max(below, levelsOf(part));
    }
    return value.is_structured() ? below + 1 : 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile memory(data, size);
    std::FILE* const file = std::fopen(memory.path().c_str(), "rb");
    ZoNJson::json value = ZoNJson::json::parse(file);
    std::fclose(file);
    const bool hasNul = std::find(data, data + size, 0) != data + size;  // to the other parser the end of the text
    const auto expected = nlohmann::json::parse(data, data + size, nullptr, false);
    const bool isDocument = !hasNul && !expected.is_discarded() && levelsOf(expected) <= 512;
    require(value.is_invalid() != isDocument, "strict JSON of 512 levels");
    if (!value.is_invalid()) {
        require(value.dump() == expected.dump(), "the same value");
        require(value.dump(2, ' ', true) == expected.dump(2, ' ', true), "written in the same way");
        const ZoNJson::json copy = value;
        if (value.is_object()) {
            value["added"] = copy;
            require(copy.dump() == expected.dump(), "a copy stays as it is");
        }
    }
    return 0;
}
