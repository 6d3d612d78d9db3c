// Reading a JSON text token by token, each with its place. Nothing of the text is kept.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace TrellanTool {

// Takes the tokens in their order. Each begins at an offset from the beginning of the text, in bytes.
class JsonVisitor {
public:
    virtual ~JsonVisitor() = default;

    virtual void openObject(std::size_t begin) = 0;
    virtual void openArray(std::size_t begin) = 0;
    virtual void closeObject() = 0;
    virtual void closeArray() = 0;
    virtual void key(std::size_t begin, std::string_view name) = 0;    // the name is good during the call only
    virtual void text(std::size_t begin, std::string_view value) = 0;  // so is the value
    virtual void scalar(std::size_t begin) = 0;                        // a number, true, false or null
};

// Where a text is no JSON, and why, in words without a line end.
struct JsonFault {
    std::size_t offset = 0;
    std::string reason;
};

// Reads `text` to its end, or as far as it is JSON. As strict as the library's own reader: no comments, no trailing
// commas, valid UTF-8, at most 512 nested levels, no NUL anywhere; a byte-order mark at the beginning is passed over.
std::optional<JsonFault> walkJson(std::string_view text, JsonVisitor& visitor);

// The text of the string, valid, that begins at `begin`.
std::string stringAt(std::string_view text, std::size_t begin);

}  // namespace TrellanTool
