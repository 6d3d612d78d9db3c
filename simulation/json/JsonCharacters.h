// The characters of a JSON text, looked at before it is parsed.
#pragma once

#include <string>

namespace TrellanSimulation {

struct JsonCharacters {
    // The text is valid UTF-8, and has neither a NUL nor one of the control characters U+001A to U+001F, which no
    // document has and the fast parser lets pass in strings.
    bool valid = true;

    bool hasBackslash = false;  // of a text that is valid
};

JsonCharacters charactersOf(const std::string& text);

}  // namespace TrellanSimulation
