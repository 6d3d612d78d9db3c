// The CRC-32 of bytes: published check values, whatever the pieces are in which the bytes come.
#include <gtest/gtest.h>

#include <string>

#include "base/Crc32.h"

namespace {

using ZoNUpdateBase::Crc32;

// Of `text` in pieces of `size` bytes.
std::uint32_t crc32Of(const std::string& text, std::size_t size)
{
    Crc32 crc32;
    for (std::size_t begin = 0; begin < text.size(); begin += size) {
        const std::string piece = text.substr(begin, size);
        crc32.add(reinterpret_cast<const unsigned char*>(piece.data()), piece.size());
    }
    return crc32.value();
}

}  // namespace

TEST(Crc32, IsAsPublishedWhateverThePieces)
{
    const std::string fox = "The quick brown fox jumps over the lazy dog";
    std::string allBytes;
    for (int byte = 0; byte < 256; ++byte) {
        allBytes += static_cast<char>(byte);
    }
    for (const std::size_t size : {1000u, 1u, 2u, 3u, 7u, 8u, 9u, 16u, 17u}) {
        EXPECT_EQ(crc32Of("123456789", size), 0xCBF43926u) << size;
        EXPECT_EQ(crc32Of(fox, size), 0x414FA339u) << size;
        EXPECT_EQ(crc32Of(allBytes, size), 0x29058C73u) << size;
        EXPECT_EQ(crc32Of(std::string(32, '\0'), size), 0x190A55ADu) << size;
        EXPECT_EQ(crc32Of(std::string(32, '\xFF'), size), 0xFF6CAB0Bu) << size;
    }
}

TEST(Crc32, OfNoBytesIsZero)
{
    EXPECT_EQ(Crc32().value(), 0u);
    EXPECT_EQ(crc32Of("", 1), 0u);
}
