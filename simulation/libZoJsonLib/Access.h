// What a json value is made of, for the files that implement it.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "libZoJsonLib/ZoNJson.h"

namespace ZoNJson {

// The contents of a value's node, by its kind.
using Text = std::string;
using Elements = std::vector<json>;
using Members = std::map<std::string, json, std::less<>>;

struct Access {
    using Kind = json::Kind;
    using Scalar = json::Scalar;

    static Kind kind(const json& value) { return value.kind; }
    static const Scalar& scalar(const json& value) { return value.scalar; }

    // The content of a value that has a node of the type Content.
    template <typename Content>
    static Content& content(const json& value)
    {
        return *static_cast<Content*>(value.node.get());
    }

    // A value of `kind`; its scalar, or its content, is given.
    static json make(Kind kind, Scalar scalar = {})
    {
        json value;
        value.kind = kind;
        value.scalar = scalar;
        return value;
    }

    template <typename Content>
    static json makeNode(Kind kind, Content content)
    {
        json value = make(kind);
        value.node = std::make_shared<Content>(std::move(content));
        return value;
    }

    // The node for a copy of `value`: the same one, or, when a reference to a part of it was handed out, one of its own
    // with copies of its children.
    static std::shared_ptr<void> nodeForCopy(const json& value)
    {
        if (!value.handedOut) {
            return value.node;
        }
        return value.is_array() ? copyOf<Elements>(value) : copyOf<Members>(value);
    }

    // The content of `value`, to hand out a part of it for changes: a node that other values share is copied before,
    // its children stay shared.
    template <typename Content>
    static Content& contentToHandOut(json& value)
    {
        if (value.node.use_count() > 1) {
            value.node = copyOf<Content>(value);
        }
        value.handedOut = true;
        return content<Content>(value);
    }

private:
    template <typename Content>
    static std::shared_ptr<void> copyOf(const json& value)
    {
        return std::make_shared<Content>(content<Content>(value));
    }
};

}  // namespace ZoNJson
