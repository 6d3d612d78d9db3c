// What a json value is made of, for the files that implement it.
//
// What is parsed or made of a scalar is kept in compact nodes, which never change. An object or array that is made to
// be changed, or of which a part was handed out for it, has a node of its own kind.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "libZoJsonLib/ZoNJson.h"
#include "simulation/json/JsonArena.h"
#include "simulation/json/JsonNodes.h"

namespace ZoNJson {

using Elements = std::vector<json>;
using Members = std::map<std::string, json, std::less<>>;

// The node of an object or array that may be changed.
template <typename Content>
struct OwnNode {
    std::size_t references = 1;
    bool handedOut = false;  // a reference to a part was handed out: the node belongs to one value
    Content content;
};

using OwnArray = OwnNode<Elements>;
using OwnObject = OwnNode<Members>;

struct Access {
    using Bits = TrellanSimulation::JsonBits;
    using Tag = TrellanSimulation::JsonTag;

    static_assert(sizeof(json) == sizeof(Bits), "the elements of a node are values");

    static const Bits& bits(const json& value) { return value.bits; }
    static Tag tag(const json& value) { return TrellanSimulation::tagOf(value.bits); }

    // The value that takes over the reference of `bits`.
    static json adopt(Bits bits)
    {
        json value;
        value.bits = bits;
        return value;
    }

    // The value that is a part of a node which does not change.
    static const json& part(const Bits& bits) { return reinterpret_cast<const json&>(bits); }

    // The node of a value that may be changed.
    template <typename Content>
    static OwnNode<Content>& own(Bits bits)
    {
        return *reinterpret_cast<OwnNode<Content>*>(bits & ~Bits{0xF});
    }
    template <typename Content>
    static OwnNode<Content>& own(const json& value)
    {
        return own<Content>(value.bits);
    }

    // A new node with this content.
    static Bits makeOwn(Elements content);
    static Bits makeOwn(Members content);

    // A reference more to the value's node, or the bits of a copy where a part of it was handed out.
    static Bits copy(Bits bits);

    // Takes a reference back.
    static void release(Bits bits);

    // The content of an array or object, to hand out a part of it for changes: what other values share is copied
    // before, its children stay shared.
    static Elements& elementsToHandOut(json& array);
    static Members& membersToHandOut(json& object);

private:
    template <typename Content>
    static Content& contentToHandOut(json& value);
};

}  // namespace ZoNJson
