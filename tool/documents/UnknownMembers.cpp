#include "tool/documents/UnknownMembers.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "tool/documents/JsonWalk.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTDescriptionObject;

// Follows the tokens of a description with what each object and array is.
class DescriptionVisitor : public JsonVisitor {
public:
    void openObject(std::size_t) final
    {
        const Part outer = beginValue();
        parts.push_back(parts.empty()           ? Part::whole
                        : outer == Part::files  ? Part::entry
                        : outer == Part::boards ? Part::board
                        : member == Part::info  ? Part::info
                                                : Part::other);
        member = Part::other;
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

    void key(std::size_t, std::string_view name) final
    {
        const Part object = parts.back();
        member = object == Part::whole && name == "info"     ? Part::info
                 : object == Part::whole && name == "files"  ? Part::files
                 : object == Part::entry && name == "boards" ? Part::boards
                                                             : Part::other;
        if (object != Part::other) {
            beginMember(object, name);
        }
    }

    void text(std::size_t, std::string_view value) final
    {
        beginValue();
        if (!parts.empty() && parts.back() != Part::other) {
            takeText(parts.back(), value);
        }
    }

    void scalar(std::size_t) final { beginValue(); }

protected:
    enum class Part { whole, info, files, entry, boards, board, other };

    // Of the present entry, and of the present board object.
    std::int32_t entryNumber() const { return entries; }
    std::int32_t boardNumber() const { return boards; }

    // A member of an object, or a list, of what a description has begins; one of its objects ends; a member or element
    // of `part` is this text.
    virtual void beginMember(Part object, std::string_view name) = 0;
    virtual void beginList(Part) {}
    virtual void endObject(Part) {}
    virtual void takeText(Part, std::string_view) {}

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

    std::vector<Part> parts;
    Part member = Part::other;  // what the present member's value is, if it is of the right type
    std::int32_t entries = -1;
    std::int32_t boards = -1;
};

class UnknownMembers final : public DescriptionVisitor {
public:
    using IsKnown = std::function<bool(ZoTDescriptionObject, std::string_view)>;

    explicit UnknownMembers(const IsKnown& isKnown) : isKnown(isKnown) {}

    std::vector<UnknownMember> found;

private:
    // What is found in an object counts when it ends, and no longer when another one takes its place.
    void beginMember(Part object, std::string_view name) override
    {
        if (object == Part::whole && name == "info") {
            inInfo.clear();
        } else if (object == Part::whole && name == "files") {
            inFiles.clear();
        } else if (object == Part::entry && name == "boards") {
            inBoards.clear();
        }
        if (isKnown(kindOf(object), name)) {
            return;
        }
        const bool inEntry = object == Part::entry || object == Part::board;
        of(object).push_back({kindOf(object), inEntry ? std::optional(entryNumber()) : std::nullopt,
                              object == Part::board ? std::optional(boardNumber()) : std::nullopt, std::string(name)});
    }

    void endObject(Part object) override
    {
        std::vector<UnknownMember>& own = of(object);
        std::sort(own.begin(), own.end(), [](const auto& a, const auto& b) { return a.key < b.key; });
        own.erase(std::unique(own.begin(), own.end(), [](const auto& a, const auto& b) { return a.key == b.key; }),
                  own.end());
        switch (object) {
            case Part::board:
                move(own, inBoards);
                break;
            case Part::entry:
                move(own, inFiles);
                move(inBoards, inFiles);
                break;
            case Part::info:
                move(own, inInfo);
                break;
            default:
                move(own, found);
                move(inInfo, found);
                move(inFiles, found);
        }
    }

    static ZoTDescriptionObject kindOf(Part object)
    {
        switch (object) {
            case Part::info:
                return ZoTDescriptionObject::INFO;
            case Part::entry:
                return ZoTDescriptionObject::ENTRY;
            case Part::board:
                return ZoTDescriptionObject::BOARD;
            default:
                return ZoTDescriptionObject::WHOLE;
        }
    }

    // Of the present object of this kind.
    std::vector<UnknownMember>& of(Part object) { return open[static_cast<std::size_t>(kindOf(object))]; }

    static void move(std::vector<UnknownMember>& from, std::vector<UnknownMember>& to)
    {
        to.insert(to.end(), std::make_move_iterator(from.begin()), std::make_move_iterator(from.end()));
        from.clear();
    }

    const IsKnown& isKnown;
    std::vector<UnknownMember> open[4];
    std::vector<UnknownMember> inInfo;
    std::vector<UnknownMember> inBoards;  // of the present entry
    std::vector<UnknownMember> inFiles;
};

class EntryNames final : public DescriptionVisitor {
public:
    explicit EntryNames(const std::set<std::int32_t>& entries) : wanted(entries) {}

    std::optional<std::map<std::int32_t, std::string>> names;

private:
    void beginMember(Part object, std::string_view name) override
    {
        if (object == Part::whole && name == "files") {
            names.reset();
        }
        isName = object == Part::entry && name == "name" && wanted.contains(entryNumber());
        if (isName) {
            names->erase(entryNumber());
        }
    }

    void beginList(Part list) override
    {
        if (list == Part::files) {
            names.emplace();
        }
    }

    void takeText(Part part, std::string_view value) override
    {
        if (part == Part::entry && isName) {
            names->emplace(entryNumber(), value);
        }
    }

    const std::set<std::int32_t>& wanted;
    bool isName = false;
};

}  // namespace

std::vector<UnknownMember> findUnknownMembers(
    std::string_view description, const std::function<bool(ZoTDescriptionObject, std::string_view)>& isKnown)
{
    UnknownMembers members(isKnown);
    walkJson(description, members);
    return std::move(members.found);
}

std::optional<std::map<std::int32_t, std::string>> findEntryNames(std::string_view description,
                                                                  const std::set<std::int32_t>& entries)
{
    EntryNames found(entries);
    walkJson(description, found);
    return std::move(found.names);
}

}  // namespace TrellanTool
