// A stack of values that grows without holding what it has twice where the system can move memory.
#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "simulation/json/JsonNodes.h"

namespace TrellanSimulation {

class JsonStack {
public:
    std::size_t size() const { return count; }
    JsonBits* data() { return memory.get(); }
    JsonBits back() const { return memory.get()[count - 1]; }

    void push(JsonBits value)
    {
        if (count == capacity) {
            grow();
        }
        memory.get()[count++] = value;
    }

    // Takes away what is above the first `newSize` values.
    void shrink(std::size_t newSize) { count = newSize; }

private:
    // A large stack has pages of its own: in the heap it could not grow in its place, and would be there twice.
    static constexpr std::size_t leastMapped = std::size_t{1} << 17;

    struct Free {
        std::size_t capacity;

        void operator()(JsonBits* block) const
        {
            isMapped(capacity) ? static_cast<void>(::munmap(block, capacity * sizeof(JsonBits))) : std::free(block);
        }
    };

    static bool isMapped(std::size_t capacity) { return capacity >= leastMapped; }

    void grow()
    {
        const std::size_t more = capacity == 0 ? 256 : 2 * capacity;
        const std::size_t bytes = more * sizeof(JsonBits);
        void* grown = nullptr;
        if (!isMapped(more)) {
            grown = std::realloc(memory.get(), bytes);
        } else if (isMapped(capacity)) {
            grown = ::mremap(memory.get(), capacity * sizeof(JsonBits), bytes, MREMAP_MAYMOVE);
        } else {
            grown = ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        }
        if (grown == nullptr || grown == MAP_FAILED) {
            throw std::bad_alloc();
        }
        if (isMapped(more) && !isMapped(capacity)) {
            std::memcpy(grown, memory.get(), count * sizeof(JsonBits));
        } else {
            static_cast<void>(memory.release());  // which is where it was no more
        }
        memory = Block(static_cast<JsonBits*>(grown), Free{more});
        capacity = more;
    }

    using Block = std::unique_ptr<JsonBits, Free>;

    Block memory{nullptr, Free{0}};
    std::size_t count = 0;
    std::size_t capacity = 0;
};

}  // namespace TrellanSimulation
