// The values: parsing.
#include "simulation/json/JsonBuilder.h"
#include "simulation/libZoJsonLib/Access.h"
#include "simulation/libZoJsonLib/DocumentText.h"

namespace ZoNJson {

using namespace TrellanSimulation;

namespace {

constexpr std::size_t maxDepth = 512;  // values are read and printed level by level on the stack

}  // namespace

json json::parse(std::FILE* stream)
{
    auto text = readDocumentText(stream);
    JsonBuilder builder(MemberOrder::byKey);
    const bool valid = text && readJson(*text, builder, maxDepth) == JsonVerdict::valid;
    return Access::adopt(valid ? builder.take() : bitsOf(JsonTag::invalid));
}

}  // namespace ZoNJson
