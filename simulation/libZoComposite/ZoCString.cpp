#include "libZoComposite/ZoCString.h"

ZoCString::ZoCString(const char* text) : text(text == nullptr ? "" : text) {}

ZoCString::ZoCString(const char* text, std::size_t length) : text(text == nullptr ? "" : text, length) {}

ZoCString::ZoCString(unsigned int number) : text(std::to_string(number)) {}

const char* ZoCString::c_str() const noexcept
{
    return text.c_str();
}

std::size_t ZoCString::length() const noexcept
{
    return text.length();
}

bool ZoCString::isEmpty() const noexcept
{
    return text.empty();
}

ZoCString& ZoCString::operator+=(const ZoCString& other)
{
    text += other.text;
    return *this;
}

bool ZoCString::operator==(const ZoCString& other) const noexcept
{
    return text == other.text;
}

bool ZoCString::operator!=(const ZoCString& other) const noexcept
{
    return text != other.text;
}
