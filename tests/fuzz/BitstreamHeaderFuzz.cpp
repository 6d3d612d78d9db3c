// Fuzz entry for the headers of FPGA bitstream files, which state a checksum or none; what stands behind a header makes
// no difference.
#include <algorithm>

#include "Fuzzing.h"
#include "archive/ZoCUpdateArchive.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    std::uint32_t checksum = 0;
    const int result = ZoCUpdateArchive::readPgiBitstreamFileHeader(file.path(), checksum);
    const std::string bytes = textOf(data, size);
    const bool isBitstream = bytes.size() >= 92 && bytes.compare(0, 8, "ZoFPGABS") == 0 &&
                             bytes.compare(12, 4, std::string("\0\0\0\1", 4)) == 0;
    require(result == (isBitstream ? 0 : 1), "a bitstream has its magic bytes, 92 bytes and format 1");
    const auto numberAt = [&](std::size_t i) {
        return std::uint32_t{data[i]} << 24 | data[i + 1] << 16 | data[i + 2] << 8 | data[i + 3];
    };
    const MemoryFile headerAlone(data, std::min<std::size_t>(size, 92));
    std::uint32_t checksumAlone = 0;
    require(ZoCUpdateArchive::readPgiBitstreamFileHeader(headerAlone.path(), checksumAlone) == result &&
                checksumAlone == checksum,
            "92 bytes decide");
    if (isBitstream) {
        require(checksum == (numberAt(8) >= 92 ? numberAt(88) : 0xFFFFFFFE), "the checksum, where the header has one");
    }
    return 0;
}
