// The text of a JSON document, read from a stream.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

// The rest of `stream`, with each run of blanks outside strings cut down to a single blank, so that blanks cost no
// memory. Nothing when the stream cannot be read to its end, or holds a NUL byte, which no JSON document does.
std::optional<std::string> readDocumentText(std::FILE* stream);
