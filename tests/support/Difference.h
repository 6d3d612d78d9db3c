// Where two texts differ, for a person to read.
#pragma once

#include <string>

// The first line in which `actual` differs from `expected`, with the lines around it, control characters written out as
// \r, \t and \xNN and blanks at line ends marked; empty when the texts are equal.
std::string difference(const std::string& expected, const std::string& actual);
