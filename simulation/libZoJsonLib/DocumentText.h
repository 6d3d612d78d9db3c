// The text of a JSON document, read from a stream.
#pragma once

#include <cstdio>
#include <optional>
#include <string>

// The rest of `stream`. Nothing when it cannot be read to its end, or holds a NUL byte, which no JSON document does.
std::optional<std::string> readDocumentText(std::FILE* stream);
