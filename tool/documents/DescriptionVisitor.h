// DescriptionVisitor: follows the tokens of a description with what each object and array is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "tool/documents/JsonWalk.h"

namespace TrellanTool {

class DescriptionVisitor : public JsonVisitor {
public:
    void openObject(std::size_t) final
    {
        const Part outer = beginValue();
        const Part opened = parts.empty()           ? Part::whole
                            : outer == Part::files  ? Part::entry
                            : outer == Part::boards ? Part::board
                            : member == Part::info  ? Part::info
                                                    : Part::other;
        parts.push_back(opened);
        member = Part::other;
        if (opened != Part::other) {
            beginObject(opened);
        }
    }

    void openArray(std::size_t) final
    {
        beginValue();
        const Part list = std::exchange(member, Part::other);
        const bool isList = list == Part::files || list == Part::boards;
        parts.push_back(isList ? list : Part::other);
        if (isList) {
            position(list) = -1;
            beginList(list);
        }
    }

    void closeObject() final
    {
        const Part closed = parts.back();
        parts.pop_back();
        if (closed != Part::other) {
            endObject(closed);
        }
    }

    void closeArray() final { parts.pop_back(); }

    void key(std::size_t begin, std::string_view name) final
    {
        const Part object = parts.back();
        member = object == Part::whole && name == "info"     ? Part::info
                 : object == Part::whole && name == "files"  ? Part::files
                 : object == Part::entry && name == "boards" ? Part::boards
                                                             : Part::other;
        if (object != Part::other) {
            beginMember(object, begin, name);
        }
    }

    void text(std::size_t begin, std::string_view) final
    {
        beginPlainValue();
        if (!parts.empty() && parts.back() != Part::other) {
            takeText(parts.back(), begin);
        }
    }

    void scalar(std::size_t) final { beginPlainValue(); }

protected:
    enum class Part { whole, info, files, entry, boards, board, other };

    // Of the present entry, and of the present board object.
    std::int32_t entryNumber() const { return entries; }
    std::int32_t boardNumber() const { return boards; }

    // An object, a member of one, or a list, of what a description has begins; one of its objects ends; a member or
    // element of `part` is the text that begins at `begin`.
    virtual void beginObject(Part) {}
    virtual void beginMember(Part object, std::size_t begin, std::string_view name) = 0;
    virtual void beginList(Part) {}
    virtual void endObject(Part) {}
    virtual void takeText(Part /*part*/, std::size_t /*begin*/) {}

private:
    std::int32_t& position(Part list) { return list == Part::files ? entries : boards; }

    // What the value that begins stands in.
    Part beginValue()
    {
        const Part outer = parts.empty() ? Part::other : parts.back();
        if (outer == Part::files || outer == Part::boards) {
            ++position(outer);
        }
        return outer;
    }

    // Of one that holds no others.
    void beginPlainValue()
    {
        beginValue();
        member = Part::other;
    }

    std::vector<Part> parts;
    Part member = Part::other;  // what the present member's value is, if it is of the right type
    std::int32_t entries = -1;
    std::int32_t boards = -1;
};

}  // namespace TrellanTool
