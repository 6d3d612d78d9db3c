// InPlaceStream: a text without backslashes, as a stream of RapidJSON that is read where it stands.
//
// What the parser puts into a string is there already, so nothing is written, and the bytes of strings and the blanks
// between values are looked at eight at a time.
#pragma once

#include <rapidjson/reader.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace TrellanSimulation {

class InPlaceStream {
public:
    using Ch = char;

    // Behind the text is a NUL, and there is none in it. Seven bytes behind the NUL are looked at, whatever they are.
    explicit InPlaceStream(char* text) : src_(text), start(text) {}

    char Peek() const { return *src_; }
    char Take() { return *src_++; }
    std::size_t Tell() const { return static_cast<std::size_t>(src_ - start); }

    // A string begins, goes on behind the character that was taken last, and has ended, which a NUL stands for.
    char* PutBegin() { return src_; }
    void Put(char character)
    {
        if (character != '\0') {
            skipPlain();
        }
    }
    std::size_t PutEnd(const char* begin) const { return static_cast<std::size_t>(src_ - begin); }

    void skipBlanks()
    {
        while (isBlank(*src_)) {
            ++src_;
            std::uint64_t others = eightBytes() ^ eightTimes(' ');
            for (; others == 0; others = eightBytes() ^ eightTimes(' ')) {
                src_ += 8;
            }
            src_ += std::countr_zero(others) / 8;
        }
    }

    char* src_;  // where it is read next; called as in the other streams

private:
    static_assert(std::endian::native == std::endian::little, "of eight bytes the first is the lowest");

    static constexpr std::uint64_t eightTimes(unsigned char byte) { return std::uint64_t{0x0101010101010101} * byte; }

    // Marks by their highest bits the bytes below `limit`. Those behind the first one may be marked wrongly.
    static constexpr std::uint64_t below(std::uint64_t eight, unsigned char limit)
    {
        return (eight - eightTimes(limit)) & ~eight & eightTimes(0x80);
    }

    static bool isBlank(char character)
    {
        return character == ' ' || character == '\n' || character == '\r' || character == '\t';
    }

    std::uint64_t eightBytes() const
    {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, src_, sizeof bytes);
        return bytes;
    }

    // To where the string ends, or what no string may hold.
    void skipPlain()
    {
        for (;; src_ += 8) {
            const std::uint64_t bytes = eightBytes();
            const std::uint64_t marks = below(bytes, 0x20) | below(bytes ^ eightTimes('"'), 1);
            if (marks != 0) {
                src_ += std::countr_zero(marks) / 8;
                return;
            }
        }
    }

    char* start;
};

}  // namespace TrellanSimulation

template <>
struct rapidjson::StreamTraits<TrellanSimulation::InPlaceStream> {
    enum { copyOptimization = 1 };
};

template <>
inline void rapidjson::SkipWhitespace(TrellanSimulation::InPlaceStream& stream)
{
    stream.skipBlanks();
}
