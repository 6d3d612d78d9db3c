// The memory of a document's nodes, released at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "simulation/json/JsonNodes.h"

namespace TrellanSimulation {

class JsonArena {
public:
    // Refers to itself once.
    JsonArena() = default;
    ~JsonArena();
    JsonArena(const JsonArena&) = delete;
    JsonArena& operator=(const JsonArena&) = delete;

    // A node of this size with room for `bytes` of content, which the caller fills in.
    JsonNode* makeNode(std::size_t size, std::size_t bytes);

    // Counts a reference to the arena, and takes one back: the last one deletes it.
    void keep() { ++references; }
    void release();

    // The arena of a node that does not stand alone.
    static JsonArena& of(const JsonNode& node);

private:
    // At the beginning of each block of memory.
    struct alignas(16) Chunk {
        Chunk* next;
        JsonArena* arena;
    };

    Chunk* addChunk(std::size_t bytes);

    std::size_t references = 1;
    Chunk* chunks = nullptr;
    char* filled = nullptr;  // the chunk that is being filled, and where in it nothing is yet
    char* free = nullptr;
    std::size_t freeBytes = 0;
    std::size_t nextChunk = 1024;
};

// Values: what does not fit into them gets a node in `arena`, or, when that is null, one that stands alone and is
// referred to once.
JsonBits makeInteger(std::int64_t value, JsonArena* arena = nullptr);
JsonBits makeUnsignedInteger(std::uint64_t value, JsonArena* arena = nullptr);
JsonBits makeReal(double value, JsonArena* arena);
JsonBits makeText(std::string_view text, JsonArena* arena = nullptr);

// The value refers once more, or once less, to its document or lone node; nothing for a value without a node.
void keepValue(JsonBits bits);
void releaseValue(JsonBits bits);

}  // namespace TrellanSimulation
