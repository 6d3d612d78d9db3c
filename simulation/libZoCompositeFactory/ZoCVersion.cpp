// The components as parts of one number of 64 bits, and the order of versions.
#include "libZoCompositeFactory/ZoCVersion.h"

#include <tuple>

#include "simulation/libZoCompositeFactory/VersionText.h"

namespace {

// Positions of the components' lowest bits in the value.
constexpr unsigned marBit = 56;
constexpr unsigned mirBit = 48;
constexpr unsigned maiBit = 40;
constexpr unsigned spbBit = 32;
constexpr unsigned spnBit = 16;
constexpr unsigned plvBit = 0;

constexpr unsigned releaseRank = 256;  // beyond every 8-bit stage

std::uint64_t pack(const VersionText::Numbers& numbers)
{
    return std::uint64_t{numbers.mar} << marBit | std::uint64_t{numbers.mir} << mirBit |
           std::uint64_t{numbers.mai} << maiBit | std::uint64_t{numbers.spb} << spbBit |
           std::uint64_t{numbers.spn} << spnBit | std::uint64_t{numbers.plv} << plvBit;
}

unsigned stageRank(const ZoCVersion& version)
{
    return version.getSpb() == 0 ? releaseRank : version.getSpb();
}

auto orderOf(const ZoCVersion& version)
{
    return std::make_tuple(version.getMar(), version.getMir(), version.getMai(), stageRank(version), version.getSpn(),
                           version.getPlv());
}

}  // namespace

ZoCVersion::ZoCVersion(const char* text)
    : value(pack(VersionText::parse(text == nullptr ? "" : text).value_or(VersionText::Numbers{})))
{
}

ZoCVersion::ZoCVersion(std::uint8_t mar, std::uint8_t mir, std::uint8_t mai, std::uint8_t spb, std::uint16_t spn,
                       std::uint16_t plv)
    : value(pack({mar, mir, mai, spb, spn, plv}))
{
}

std::uint8_t ZoCVersion::getMar() const noexcept
{
    return static_cast<std::uint8_t>(value >> marBit);
}

std::uint8_t ZoCVersion::getMir() const noexcept
{
    return static_cast<std::uint8_t>(value >> mirBit);
}

std::uint8_t ZoCVersion::getMai() const noexcept
{
    return static_cast<std::uint8_t>(value >> maiBit);
}

std::uint8_t ZoCVersion::getSpb() const noexcept
{
    return static_cast<std::uint8_t>(value >> spbBit);
}

std::uint16_t ZoCVersion::getSpn() const noexcept
{
    return static_cast<std::uint16_t>(value >> spnBit);
}

std::uint16_t ZoCVersion::getPlv() const noexcept
{
    return static_cast<std::uint16_t>(value >> plvBit);
}

unsigned long long ZoCVersion::getAsULong64() const noexcept
{
    return value;
}

void ZoCVersion::setByULong64(unsigned long long newValue) noexcept
{
    value = newValue;
}

ZoCString ZoCVersion::getAsString() const
{
    const std::string text = VersionText::textOf({getMar(), getMir(), getMai(), getSpb(), getSpn(), getPlv()});
    return ZoCString(text.c_str(), text.size());
}

ZoCVersion::operator ZoCString() const
{
    return getAsString();
}

bool ZoCVersion::operator<(const ZoCVersion& other) const noexcept
{
    return orderOf(*this) < orderOf(other);
}

bool ZoCVersion::operator>(const ZoCVersion& other) const noexcept
{
    return other < *this;
}

bool ZoCVersion::operator==(const ZoCVersion& other) const noexcept
{
    return value == other.value;
}

bool ZoCVersion::operator!=(const ZoCVersion& other) const noexcept
{
    return value != other.value;
}
