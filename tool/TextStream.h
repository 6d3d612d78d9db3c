// Streams into memory.
#pragma once

#include <sstream>

namespace TrellanTool {

// As std::ostringstream, which cuts its text short without a word where memory is short. This one throws
// std::bad_alloc.
class TextStream : public std::ostringstream {
public:
    TextStream() { exceptions(std::ios_base::badbit); }
};

}  // namespace TrellanTool
