// What the tool prints on its way to standard output or standard error.
#pragma once

#include <streambuf>
#include <string>
#include <string_view>

namespace TrellanTool {

// The buffer of a std::ostream that writes to a file descriptor: when 64 KB are full, when the stream is flushed, at a
// terminal after each line, and at its end.
//
// A terminal is shown control characters as \xNN, so that no name in an archive can do anything to it; to all else the
// bytes go as they are. A failed write makes the stream bad, and nothing is written from then on.
class OutputBuffer : public std::streambuf {
public:
    explicit OutputBuffer(int descriptor);
    ~OutputBuffer() override;
    OutputBuffer(const OutputBuffer&) = delete;
    OutputBuffer& operator=(const OutputBuffer&) = delete;

    // Whoever reads both outputs in one place gets them in the order in which they were written: what is written here
    // first has the other one write out what it holds. `other` must live as long as something is written here.
    void keepOrderWith(OutputBuffer& other) { neighbour = &other; }

    // Why a write has failed, an errno; 0 when none has.
    int error() const { return failure; }

    // From now on there is no other one.
    void keepNoOrder() { neighbour = nullptr; }

protected:
    int_type overflow(int_type character) override;
    std::streamsize xsputn(const char* text, std::streamsize length) override;
    int sync() override;

private:
    bool append(std::string_view text);
    bool writeOut(std::string_view text);
    bool writeHeld();

    const int descriptor;
    const bool isTerminal;
    int failure = 0;
    std::string held;
    OutputBuffer* neighbour = nullptr;
};

}  // namespace TrellanTool
