// ZoCVersion: a version number of six components.
//
//   component | Mar | Mir | Mai | Spb | Spn | Plv
//   bits      |  8  |  8  |  8  |  8  | 16  | 16
//
// The 64-bit value holds them from the top bit down in this order; 0 is the empty version.
//
// Text form: "Mar.Mir", then ".Mai" when Mai is not 0, then the stage, then "p" and Plv when Plv is not 0. The stage by
// Spb: 0 nothing when Spn is 0, else "r" and Spn (a release); 1 "a" and Spn; 2 "b" and Spn; 3 and above "s", Spb, "."
// and Spn. All numbers are decimal: 23.2a12, 23.2.1, 1.0r3p1, 5.0s3.7.
//
// A value type: copies are independent of each other, but one object is not to be used by two threads at a time.
#pragma once

#include <cstdint>

#include "libZoComposite/ZoCString.h"

class ZoCVersion {
public:
    // The empty version.
    ZoCVersion() = default;

    // Parses exactly the text forms above, also a lone "Mar"; numbers may have leading zeros and zero components may be
    // written ("1.2.0"). Anything else (null, an empty text and a number beyond its component's width included) gives
    // the empty version.
    explicit ZoCVersion(const char* text);

    ZoCVersion(std::uint8_t mar, std::uint8_t mir, std::uint8_t mai, std::uint8_t spb, std::uint16_t spn,
               std::uint16_t plv);

    std::uint8_t getMar() const noexcept;
    std::uint8_t getMir() const noexcept;
    std::uint8_t getMai() const noexcept;
    std::uint8_t getSpb() const noexcept;
    std::uint16_t getSpn() const noexcept;
    std::uint16_t getPlv() const noexcept;

    // All six components as one value; 0 for the empty version.
    unsigned long long getAsULong64() const noexcept;
    void setByULong64(unsigned long long value) noexcept;

    // The text form.
    ZoCString getAsString() const;
    operator ZoCString() const;

    // Ordered by Mar, Mir, Mai, stage, Spn, Plv. A release (Spb 0) is later than every other stage of the same numbers,
    // and those are ordered by Spb: 23.2a12 < 23.2b1 < 23.2 < 23.2.1.
    bool operator<(const ZoCVersion& other) const noexcept;
    bool operator>(const ZoCVersion& other) const noexcept;
    bool operator==(const ZoCVersion& other) const noexcept;
    bool operator!=(const ZoCVersion& other) const noexcept;

private:
    std::uint64_t value = 0;
};
