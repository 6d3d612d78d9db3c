#include "simulation/json/JsonBuilder.h"

#include <algorithm>
#include <utility>

#include "simulation/json/JsonMembers.h"

namespace TrellanSimulation {

namespace {

constexpr std::size_t maxShared = 24;  // longer values mostly come once

// Of the length and both ends of a text that is not short.
std::size_t hashOf(std::string_view text)
{
    std::uint64_t front = 0;
    std::uint64_t back = 0;
    std::memcpy(&front, text.data(), sizeof front);
    std::memcpy(&back, text.data() + text.size() - sizeof back, sizeof back);
    return (front * 31 + back + text.size()) * 0x9E3779B97F4A7C15 >> 56;
}

}  // namespace

JsonBuilder::~JsonBuilder()
{
    if (arena != nullptr) {
        arena->release();
    }
}

// Made at the first node: a document may do without.
JsonArena* JsonBuilder::memory()
{
    if (arena == nullptr) {
        arena = new JsonArena();
    }
    return arena;
}

void JsonBuilder::begin()
{
    values.shrink(0);
    open.clear();
    keys.fill(0);
    texts.fill(0);
    if (arena != nullptr) {
        std::exchange(arena, nullptr)->release();
    }
}

JsonBits JsonBuilder::take()
{
    const JsonBits document = values.back();
    values.shrink(0);
    keepValue(document);
    return document;
}

JsonBits JsonBuilder::shared(std::string_view text, LateTexts& late)
{
    if (text.size() <= maxShortText) {
        return shortTextBits(text);
    }
    JsonBits& known = late[hashOf(text)];
    if (known == 0 || textOf(known) != text) {
        known = makeText(text, memory());
    }
    return known;
}

void JsonBuilder::key(std::string_view name)
{
    values.push(shared(name, keys));
}

void JsonBuilder::text(std::string_view value)
{
    values.push(value.size() <= maxShared ? shared(value, texts) : makeText(value, memory()));
}

void JsonBuilder::closeObject()
{
    const JsonMembers members(values.data() + open.back(), (values.size() - open.back()) / 2);
    const std::size_t count = order == MemberOrder::byKey ? members.orderByKey() : members.dropRepeated();
    values.shrink(open.back() + 2 * count);
    close(JsonTag::object);
}

void JsonBuilder::close(JsonTag tag)
{
    const std::size_t begin = open.back();
    const std::size_t count = values.size() - begin;
    JsonBits closed = bitsOf(tag);
    if (count != 0) {
        JsonNode* node = memory()->makeNode(count, count * sizeof(JsonBits));
        std::memcpy(node->values(), values.data() + begin, count * sizeof(JsonBits));
        closed = bitsOf(tag, node);
    }
    values.shrink(begin);
    open.pop_back();
    values.push(closed);
}

}  // namespace TrellanSimulation
