// Streams into memory and out of it.
#pragma once

#include <sstream>
#include <string>

namespace TrellanTool {

// As std::ostringstream, which cuts its text short without a word where memory is short. This one throws
// std::bad_alloc.
class TextStream : public std::ostringstream {
public:
    TextStream() { exceptions(std::ios_base::badbit); }
};

// As std::istringstream, which ends its text too early. This one throws likewise.
class TextSource : public std::istringstream {
public:
    explicit TextSource(const std::string& text) : std::istringstream(text) { exceptions(std::ios_base::badbit); }
};

}  // namespace TrellanTool
