// FoundMembers: members of a JSON text, by where their keys begin. There may be nearly as many as the text has bytes.
#pragma once

#include <cstddef>
#include <deque>
#include <string>

namespace TrellanTool {

class FoundMembers {
public:
    // The member whose key begins at `offset`, of the object to which the JSON Pointer `object` leads. Each takes a few
    // bytes when it comes not long behind the one before in the text, and the pointers begin alike.
    void add(std::size_t offset, const std::string& object);

    // Adds those of another one, which is empty then.
    void take(FoundMembers& others);

    void clear();

    std::size_t size() const { return count; }

    // One after the other is fastest. The pointer is good until the next call.
    std::size_t offset(std::size_t position) const { return memberAt(position).offset; }
    const std::string& object(std::size_t position) const { return memberAt(position).object; }

private:
    // In a block a member is told by what differs from the one before.
    struct Member {
        std::size_t offset = 0;
        std::string object;
    };

    struct Reader {
        std::size_t next = 0;  // position
        std::size_t byte = 0;  // in the block
        Member member;         // the last one that was read
    };

    const Member& memberAt(std::size_t position) const;
    void readNext() const;

    std::deque<std::string> blocks;
    std::size_t count = 0;
    Member last;
    mutable Reader reader;
};

}  // namespace TrellanTool
