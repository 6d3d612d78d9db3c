// What a child process tells its parent through a pipe.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace TrellanTool {

struct ChildMessage {
    enum Kind : std::uint32_t {
        BEGUN,       // the number was begun
        DONE,        // with the result as text
        FAILED,      // with the reason as text
        NEEDS_FIRST  // the number needs a child that has done nothing yet
    };

    Kind kind;
    std::uint32_t number;
    std::string text;
};

// The bytes of a message. Parent and child are the same program on the same machine.
std::string bytesOf(const ChildMessage& message);

// What has come through a pipe and was not taken yet.
class ChildMessages {
public:
    void add(const char* bytes, std::size_t length);

    // The next message, once it is there as a whole.
    std::optional<ChildMessage> next();

private:
    std::string received;
    std::size_t taken = 0;
};

}  // namespace TrellanTool
