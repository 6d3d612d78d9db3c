// A file descriptor that is closed at the end of its scope.
#pragma once

#include <unistd.h>

namespace TrellanTool {

class Descriptor {
public:
    // Takes over `number`; negative: none.
    explicit Descriptor(int number) noexcept : number(number) {}
    ~Descriptor()
    {
        if (isOpen()) {
            ::close(number);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const noexcept { return number >= 0; }
    int get() const noexcept { return number; }

private:
    const int number;
};

}  // namespace TrellanTool
