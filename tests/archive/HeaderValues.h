// HeaderValues: what a reader of update-file headers gives, with values that no reader leaves in place.
#pragma once

#include <cstdint>
#include <string>

#include "archive/ZoCUpdateArchive.h"

struct HeaderValues {
    static constexpr std::uint32_t untouched = 0x5A5A5A5A;

    int code = -1;
    std::uint32_t minHw = untouched;
    std::uint32_t maxHw = untouched;
    std::uint32_t minSw = untouched;
    std::uint32_t maxSw = untouched;
    std::uint32_t typeId = untouched;
    std::uint32_t checksum = untouched;
    ZoCVersion version{99, 99, 99, 99, 99, 99};
};

using HeaderReader = int (*)(const std::string&, std::uint32_t&, std::uint32_t&, std::uint32_t&, std::uint32_t&,
                             std::uint32_t&, std::uint32_t&, ZoCVersion&);

inline HeaderValues readHeader(HeaderReader reader, const std::string& path)
{
    HeaderValues values;
    values.code = reader(path, values.minHw, values.maxHw, values.minSw, values.maxSw, values.typeId, values.checksum,
                         values.version);
    return values;
}
