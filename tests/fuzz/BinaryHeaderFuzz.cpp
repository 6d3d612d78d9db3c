// Fuzz entry for the headers of binary update files: every value is the one that stands at its offset, or 0 behind the
// end of the file.
#include "Fuzzing.h"
#include "archive/ZoCUpdateArchive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    std::uint32_t minHw = 0, maxHw = 0, minSw = 0, maxSw = 0, typeId = 0, checksum = 0;
    ZoCVersion version;
    const int result =
        ZoCUpdateArchive::readUpdateFileHeader(file.path(), minHw, maxHw, minSw, maxSw, typeId, checksum, version);
    const std::string bytes = textOf(data, size);
    const bool isBinary = bytes.size() >= 48 && bytes.compare(40, 8, "\x12\x55\xAA\x34\xAA\x18\x47\x55") == 0;
    require(result == (isBinary ? 0 : 1), "a binary header is one that has the magic bytes at 40");
    if (!isBinary) {
        return 0;
    }
    const auto at = [&](std::size_t offset, unsigned width) {
        std::uint64_t value = 0;
        for (std::size_t i = offset; i < offset + width; ++i) {
            value = value * 256 + (i < size ? data[i] : 0u);
        }
        return value;
    };
    require(checksum == at(60, 4) && typeId == at(360, 4), "checksum and type id");
    require(minHw == at(344, 4) && maxHw == at(348, 4) && minSw == at(352, 4) && maxSw == at(356, 4), "ranges");
    const std::uint64_t code = at(79, 1);
    const std::uint64_t stage = code == 10 ? 1 : code == 11 ? 2 : 0;
    require(version.getAsULong64() == (at(76, 3) << 40 | stage << 32 | at(80, 4)), "version");
    return 0;
}
