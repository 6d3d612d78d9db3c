// Blocks of growing size. A node says how far it stands behind its block's beginning, and that where its arena is.
#include "simulation/json/JsonArena.h"

#include <algorithm>
#include <new>
#include <utility>

namespace TrellanSimulation {

namespace {

constexpr std::size_t unit = 16;  // nodes are aligned to it
constexpr std::size_t largestChunk = 65536;
constexpr std::size_t largeNode = 16384;  // gets a chunk of its own

constexpr std::size_t roundedUp(std::size_t bytes)
{
    return (bytes + unit - 1) / unit * unit;
}

// In front of a node that stands alone.
struct alignas(16) LoneHead {
    std::size_t references;
};

LoneHead* headOf(JsonNode* node)
{
    return reinterpret_cast<LoneHead*>(node) - 1;
}

JsonNode* makeLoneNode(std::size_t size, std::size_t bytes)
{
    void* block = ::operator new(sizeof(LoneHead) + sizeof(JsonNode) + bytes);
    auto* head = new (block) LoneHead{1};
    return new (head + 1) JsonNode(size, 0);
}

JsonNode* makeNode(std::size_t size, std::size_t bytes, JsonArena* arena)
{
    return arena == nullptr ? makeLoneNode(size, bytes) : arena->makeNode(size, bytes);
}

JsonBits makeWide(JsonTag tag, JsonBits value, JsonArena* arena)
{
    JsonNode* node = makeNode(1, sizeof value, arena);
    *node->values() = value;
    return bitsOf(tag, node);
}

}  // namespace

JsonArena::~JsonArena()
{
    while (chunks != nullptr) {
        ::operator delete(std::exchange(chunks, chunks->next));
    }
}

void JsonArena::release()
{
    if (--references == 0) {
        delete this;
    }
}

JsonArena::Chunk* JsonArena::addChunk(std::size_t bytes)
{
    chunks = new (::operator new(sizeof(Chunk) + bytes)) Chunk{chunks, this};
    return chunks;
}

JsonNode* JsonArena::makeNode(std::size_t size, std::size_t bytes)
{
    const std::size_t needed = roundedUp(sizeof(JsonNode) + bytes);
    if (needed > largeNode) {
        return new (addChunk(needed) + 1) JsonNode(size, sizeof(Chunk) / unit);
    }
    if (needed > freeBytes) {
        Chunk* chunk = addChunk(std::max(nextChunk, needed));
        filled = reinterpret_cast<char*>(chunk);
        free = reinterpret_cast<char*>(chunk + 1);
        freeBytes = std::max(nextChunk, needed);
        nextChunk = std::min(2 * nextChunk, largestChunk);
    }
    auto* node = new (free) JsonNode(size, static_cast<std::size_t>(free - filled) / unit);
    free += needed;
    freeBytes -= needed;
    return node;
}

JsonArena& JsonArena::of(const JsonNode& node)
{
    const char* chunk = reinterpret_cast<const char*>(&node) - node.distance() * unit;
    return *reinterpret_cast<const Chunk*>(chunk)->arena;
}

JsonBits makeInteger(std::int64_t value, JsonArena* arena)
{
    const auto bits = static_cast<JsonBits>(value);
    const bool narrow = static_cast<std::int64_t>(bits << jsonTagBits) >> jsonTagBits == value;
    return narrow ? bitsOf(JsonTag::integer, bits) : makeWide(JsonTag::wideInteger, bits, arena);
}

JsonBits makeUnsignedInteger(std::uint64_t value, JsonArena* arena)
{
    const bool narrow = value << jsonTagBits >> jsonTagBits == value;
    return narrow ? bitsOf(JsonTag::unsignedInteger, value) : makeWide(JsonTag::wideUnsignedInteger, value, arena);
}

JsonBits makeReal(double value, JsonArena* arena)
{
    const auto bits = std::bit_cast<JsonBits>(value);
    const bool narrow = (bits & 0xF) == 0;
    return narrow ? bits | static_cast<JsonBits>(JsonTag::real) : makeWide(JsonTag::wideReal, bits, arena);
}

JsonBits makeText(std::string_view text, JsonArena* arena)
{
    if (text.size() <= maxShortText) {
        return shortTextBits(text);
    }
    JsonNode* node = makeNode(text.size(), text.size(), arena);
    std::memcpy(node->text(), text.data(), text.size());
    return bitsOf(JsonTag::text, node);
}

void keepValue(JsonBits bits)
{
    if (!hasNode(bits)) {
        return;
    }
    JsonNode* node = nodeOf(bits);
    node->distance() == 0 ? static_cast<void>(++headOf(node)->references) : JsonArena::of(*node).keep();
}

void releaseValue(JsonBits bits)
{
    if (!hasNode(bits)) {
        return;
    }
    JsonNode* node = nodeOf(bits);
    if (node->distance() != 0) {
        JsonArena::of(*node).release();
    } else if (--headOf(node)->references == 0) {
        ::operator delete(headOf(node));
    }
}

}  // namespace TrellanSimulation
