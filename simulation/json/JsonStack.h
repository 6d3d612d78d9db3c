// A stack of values that grows without holding what it has twice where the system can move memory.
#pragma once

#include <cstddef>
#include <cstdlib>
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
    struct Free {
        void operator()(JsonBits* block) const { std::free(block); }
    };

    void grow()
    {
        const std::size_t more = capacity == 0 ? 256 : 2 * capacity;
        void* grown = std::realloc(memory.get(), more * sizeof(JsonBits));
        if (grown == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(memory.release());  // which is where it was no more
        memory.reset(static_cast<JsonBits*>(grown));
        capacity = more;
    }

    std::unique_ptr<JsonBits, Free> memory;
    std::size_t count = 0;
    std::size_t capacity = 0;
};

}  // namespace TrellanSimulation
