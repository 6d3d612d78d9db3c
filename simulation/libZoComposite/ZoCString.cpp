#include "libZoComposite/ZoCString.h"

#include <algorithm>
#include <cstring>

ZoCString::ZoCString(const char* text) : ZoCString(text, text == nullptr ? 0 : std::strlen(text)) {}

ZoCString::ZoCString(const char* text, std::size_t length) : ZoCString()
{
    if (length > mostShort) {
        longText = std::make_shared<const std::string>(text, length);
        return;
    }
    std::copy_n(text, length, shortText.data());
    shortText.back() = static_cast<char>(mostShort - length);
}

ZoCString::ZoCString(unsigned int number) : ZoCString(std::to_string(number).c_str()) {}

const char* ZoCString::c_str() const noexcept
{
    return longText ? longText->c_str() : shortText.data();
}

std::size_t ZoCString::length() const noexcept
{
    return longText ? longText->length() : mostShort - static_cast<unsigned char>(shortText.back());
}

bool ZoCString::isEmpty() const noexcept
{
    return length() == 0;
}

ZoCString& ZoCString::operator+=(const ZoCString& other)
{
    if (other.isEmpty()) {
        return *this;
    }
    std::string both;
    both.reserve(length() + other.length());
    both.append(c_str(), length()).append(other.c_str(), other.length());
    return *this = ZoCString(both.data(), both.size());
}

bool ZoCString::operator==(const ZoCString& other) const noexcept
{
    const bool isSame = longText != nullptr && longText == other.longText;
    return isSame || (length() == other.length() && std::memcmp(c_str(), other.c_str(), length()) == 0);
}

bool ZoCString::operator!=(const ZoCString& other) const noexcept
{
    return !(*this == other);
}
