// The nodes of values: shared, copied and released.
#include "simulation/libZoJsonLib/Access.h"

#include <utility>

namespace ZoNJson {

using namespace TrellanSimulation;

namespace {

template <typename Content>
JsonBits makeNode(JsonTag tag, Content content)
{
    auto* node = new OwnNode<Content>{1, false, std::move(content)};
    return reinterpret_cast<std::uintptr_t>(node) | static_cast<JsonBits>(tag);
}

template <typename Content>
JsonBits copyOwn(JsonBits bits)
{
    OwnNode<Content>& node = Access::own<Content>(bits);
    if (node.handedOut) {
        return Access::makeOwn(node.content);
    }
    ++node.references;
    return bits;
}

template <typename Content>
void releaseOwn(JsonBits bits)
{
    OwnNode<Content>& node = Access::own<Content>(bits);
    if (--node.references == 0) {
        delete &node;
    }
}

// The content of a node that does not change, with shared children.

void fill(Elements& elements, JsonValues values)
{
    elements.reserve(values.count);
    for (std::size_t i = 0; i < values.count; ++i) {
        elements.push_back(Access::part(values.first[i]));
    }
}

void fill(Members& members, JsonValues values)
{
    for (std::size_t i = 0; i < values.count; i += 2) {
        members.emplace_hint(members.end(), textOf(values.first[i]), Access::part(values.first[i + 1]));
    }
}

constexpr JsonTag tagOfContent(const Elements&)
{
    return JsonTag::ownArray;
}

constexpr JsonTag tagOfContent(const Members&)
{
    return JsonTag::ownObject;
}

}  // namespace

JsonBits Access::makeOwn(Elements content)
{
    return makeNode(JsonTag::ownArray, std::move(content));
}

JsonBits Access::makeOwn(Members content)
{
    return makeNode(JsonTag::ownObject, std::move(content));
}

JsonBits Access::copy(JsonBits bits)
{
    switch (tagOf(bits)) {
        case JsonTag::ownArray:
            return copyOwn<Elements>(bits);
        case JsonTag::ownObject:
            return copyOwn<Members>(bits);
        default:
            keepValue(bits);
            return bits;
    }
}

void Access::release(JsonBits bits)
{
    switch (tagOf(bits)) {
        case JsonTag::ownArray:
            releaseOwn<Elements>(bits);
            break;
        case JsonTag::ownObject:
            releaseOwn<Members>(bits);
            break;
        default:
            releaseValue(bits);
            break;
    }
}

template <typename Content>
Content& Access::contentToHandOut(json& value)
{
    const JsonTag ownTag = tagOfContent(Content());
    if (tag(value) != ownTag) {
        Content content;
        fill(content, valuesOf(value.bits));
        value = adopt(makeOwn(std::move(content)));
    } else if (own<Content>(value).references > 1) {
        value = adopt(makeOwn(own<Content>(value).content));
    }
    own<Content>(value).handedOut = true;
    return own<Content>(value).content;
}

Elements& Access::elementsToHandOut(json& array)
{
    return contentToHandOut<Elements>(array);
}

Members& Access::membersToHandOut(json& object)
{
    return contentToHandOut<Members>(object);
}

}  // namespace ZoNJson
