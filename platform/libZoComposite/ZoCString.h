// ZoCString: the platform's character string.
//
// Holds a sequence of bytes (UTF-8 by convention). A value type: copies are independent of each other, but one object
// is not to be used by two threads at a time. Copying asks for no memory, however long the text is.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>

class ZoCString {
public:
    // The empty string.
    ZoCString() noexcept { shortText.back() = mostShort; }

    // The characters of `text` up to its terminating NUL; null gives the empty string.
    ZoCString(const char* text);

    // The first `length` characters of `text`, NULs included. `text` may be null when `length` is 0.
    ZoCString(const char* text, std::size_t length);

    // The decimal digits of `number`, without sign or leading zeros.
    explicit ZoCString(unsigned int number);

    // The characters with a terminating NUL. Valid until the string is changed or destroyed.
    const char* c_str() const noexcept;

    // Number of bytes, the terminating NUL not counted.
    std::size_t length() const noexcept;

    bool isEmpty() const noexcept;

    ZoCString& operator+=(const ZoCString& other);

    // Bytewise comparison, case-sensitive.
    bool operator==(const ZoCString& other) const noexcept;
    bool operator!=(const ZoCString& other) const noexcept;

private:
    static constexpr std::size_t mostShort = 15;

    std::shared_ptr<const std::string> longText;  // what its copies share; null: the text is short

    // A short text; empty for a long one. The last byte is the room that is left, and so the NUL of the longest.
    std::array<char, mostShort + 1> shortText{};
};
