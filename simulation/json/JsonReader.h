// Reading JSON text: strictly, and event by event.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace TrellanSimulation {

// Takes what is read, in the order in which it is written. Texts are good during the call only.
class JsonEvents {
public:
    virtual ~JsonEvents() = default;

    // A document begins; what came before does not count.
    virtual void begin() = 0;

    virtual void null() = 0;
    virtual void boolean(bool value) = 0;
    virtual void integer(std::int64_t value) = 0;           // written with a sign
    virtual void unsignedInteger(std::uint64_t value) = 0;  // written without
    virtual void real(double value) = 0;
    virtual void text(std::string_view value) = 0;

    virtual void openObject() = 0;
    virtual void key(std::string_view name) = 0;
    virtual void closeObject() = 0;
    virtual void openArray() = 0;
    virtual void closeArray() = 0;
};

enum class JsonVerdict {
    valid,
    invalid,
    tooDeep  // more levels of objects and arrays than allowed; what comes behind the first such level was not read
};

// Reads `text` as one document of at most `maxDepth` levels. Strict RFC 8259: neither comments nor trailing commas nor
// NUL bytes; invalid UTF-8, lone surrogates and numbers beyond a double are refused. A leading byte-order mark is
// skipped. Integers beyond 64 bits become floating point; -0 is an integer with a sign. May reserve memory behind the
// text, which stays as it is. What `events` throws goes through.
JsonVerdict readJson(std::string& text, JsonEvents& events, std::size_t maxDepth);

// Why `text`, which is not valid, is not: the parser's words with line and column, and of what it has read last the
// beginning.
std::string reasonWhyNoJson(const std::string& text);

}  // namespace TrellanSimulation
