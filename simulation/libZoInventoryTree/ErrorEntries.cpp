#include "simulation/libZoInventoryTree/ErrorEntries.h"

namespace TrellanSimulation {

namespace {

ZoSErrorRecord readError(const Json& source, const Place& place)
{
    requireMembers(source, {"code", "text", "originNode", "timeStamp", "mainModule", "subModule", "function", "line"},
                   place);
    ZoSErrorRecord error;
    getMember(source, "code", place);
    readNumber(source, "code", place, error.code);
    error.text = getText(getMember(source, "text", place), Place(place, "text"));
    readNumber(source, "originNode", place, error.originNode);
    readNumber(source, "timeStamp", place, error.timeStamp);
    readNumber(source, "mainModule", place, error.mainModule);
    readNumber(source, "subModule", place, error.subModule);
    readNumber(source, "line", place, error.line);
    if (const auto function = source.find("function")) {
        error.function = getText(*function, Place(place, "function"));
    }
    return error;
}

}  // namespace

ErrorEntries::ErrorEntries(const Json& source, const Place& place)
{
    requireArray(source, place);
    errors = source.values();
    for (std::size_t position = 0; position < errors.count; ++position) {
        readError(Json(errors.first[position]), Place(place, position));
    }
}

void ErrorEntries::addTo(ZoCErrorListPool& pool) const
{
    for (std::size_t position = 0; position < errors.count; ++position) {
        pool.addError(readError(Json(errors.first[position]), Place()));
    }
}

}  // namespace TrellanSimulation
