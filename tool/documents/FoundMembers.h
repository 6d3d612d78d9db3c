// FoundMembers: members of a JSON text, by where their keys begin. There may be nearly as many as the text has bytes.
#pragma once

#include <cstddef>
#include <deque>
#include <string>

namespace TrellanTool {

class FoundMembers {
public:
    // The member whose key begins at `offset`, of the object to which the JSON Pointer `object` leads. Those of one
    // object one behind the other take eight bytes each.
    void add(std::size_t offset, const std::string& object);

    // Adds those of another one, which is empty then.
    void take(FoundMembers& others);

    void clear();

    std::size_t size() const { return offsets.size(); }
    std::size_t offset(std::size_t position) const { return offsets[position]; }
    const std::string& object(std::size_t position) const;

private:
    struct Object {
        std::size_t first;  // position of its first member
        std::string pointer;
    };

    std::deque<std::size_t> offsets;
    std::deque<Object> objects;
};

}  // namespace TrellanTool
