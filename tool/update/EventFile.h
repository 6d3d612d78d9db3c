// A file or pipe to which lines are appended, each of them whole.
#pragma once

#include <chrono>
#include <string>

#include "tool/Descriptor.h"

namespace TrellanTool {

class EventFile {
public:
    // Opens `path`, and makes the file when it is not there. A pipe that nobody reads is not waited for. When something
    // goes wrong, here or later, lines are lost, and nothing else happens.
    explicit EventFile(const std::string& path);

    // Appends `line` and a line end in one write; where the file ends in the middle of a line, since an earlier writer
    // was killed or the medium was full, on a line of its own. With `toMedium` it is on the medium when this returns.
    // For a pipe's reader that is slow, all lines together wait for one second. Throws std::bad_alloc when memory is
    // short.
    void append(const std::string& line, bool toMedium);

    // A line is lost for the reason that errno would tell as `error`.
    void lose(int error) noexcept;

    // The first thing that has gone wrong, in one line without a line end, once; otherwise empty.
    std::string takeFault();

private:
    bool writeAll(const std::string& text);
    bool waitForReader();

    const std::string path;
    const Descriptor file;
    bool endsInLine = false;  // what is written next begins with a line end
    int fault = 0;            // the first one, as errno tells it
    bool faultTaken = false;
    std::chrono::milliseconds patience{1000};  // left for a slow reader
};

}  // namespace TrellanTool
