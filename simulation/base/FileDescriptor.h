// A file descriptor that is closed at the end of its scope.
#pragma once

#include <unistd.h>

#include <utility>

namespace TrellanSimulation {

class FileDescriptor {
public:
    // Takes over `descriptor`; negative: none.
    explicit FileDescriptor(int descriptor = -1) noexcept : descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor, other.descriptor);
        return *this;
    }
    ~FileDescriptor()
    {
        if (isOpen()) {
            ::close(descriptor);
        }
    }

    bool isOpen() const noexcept { return descriptor >= 0; }
    int get() const noexcept { return descriptor; }

private:
    int descriptor;
};

}  // namespace TrellanSimulation
