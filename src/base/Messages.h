// Codes of the library's registered messages.
#pragma once

namespace ZoNUpdateBase {

constexpr unsigned updateStarted = 0x26500000;        // log; one argument: what is updated
constexpr unsigned unsupportedElements = 0x26500001;  // warning; no arguments

}  // namespace ZoNUpdateBase
