#include "tool/documents/UnknownMembers.h"

#include <array>
#include <string>

#include "tool/documents/DescriptionVisitor.h"
#include "tool/documents/DuplicateKeys.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTDescriptionObject;

class UnknownMembers final : public DescriptionVisitor {
public:
    using IsKnown = std::function<bool(ZoTDescriptionObject, std::string_view)>;

    UnknownMembers(std::string_view description, const IsKnown& isKnown) : isKnown(isKnown), keys(description) {}

    FoundMembers found;

private:
    void beginObject(Part object) override { firstKeys[static_cast<std::size_t>(kindOf(object))] = keys.begin(); }

    // What is found in an object counts when it ends, and no longer when another one takes its place.
    void beginMember(Part object, std::size_t begin, std::string_view name) override
    {
        if (object == Part::whole && name == "info") {
            inInfo.clear();
        } else if (object == Part::whole && name == "files") {
            inFiles.clear();
        } else if (object == Part::entry && name == "boards") {
            inBoards.clear();
        }
        if (!isKnown(kindOf(object), name)) {
            keys.add(begin, name);
        }
    }

    void endObject(Part object) override
    {
        FoundMembers& into = object == Part::info    ? inInfo
                             : object == Part::entry ? inFiles
                             : object == Part::board ? inBoards
                                                     : found;
        const std::string pointer = pointerTo(object);
        keys.take(firstKeys[static_cast<std::size_t>(kindOf(object))],
                  [&](std::span<const std::size_t> offsets) { into.add(offsets.back(), pointer); });
        if (object == Part::entry) {
            inFiles.take(inBoards);
        } else if (object == Part::whole) {
            found.take(inInfo);
            found.take(inFiles);
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

    std::string pointerTo(Part object) const
    {
        std::string entry = "/files/" + std::to_string(entryNumber());
        switch (object) {
            case Part::info:
                return "/info";
            case Part::entry:
                return entry;
            case Part::board:
                return entry + "/boards/" + std::to_string(boardNumber());
            default:
                return "";
        }
    }

    const IsKnown& isKnown;
    DuplicateKeys keys;                         // unknown ones
    std::array<std::size_t, 4> firstKeys = {};  // of the present object of each kind
    FoundMembers inInfo;
    FoundMembers inBoards;  // of the present entry
    FoundMembers inFiles;
};

class EntryNames final : public DescriptionVisitor {
public:
    std::optional<std::vector<EntryName>> names;

private:
    void beginMember(Part object, std::size_t, std::string_view name) override
    {
        if (object == Part::whole && name == "files") {
            names.reset();
        }
        isName = object == Part::entry && name == "name";
        if (isName && !names->empty() && names->back().entry == entryNumber()) {
            names->pop_back();
        }
    }

    void beginList(Part list) override
    {
        if (list == Part::files) {
            names.emplace();
        }
    }

    void takeText(Part part, std::size_t begin) override
    {
        if (part == Part::entry && isName) {
            names->push_back({entryNumber(), begin});
        }
    }

    bool isName = false;
};

}  // namespace

FoundMembers findUnknownMembers(std::string_view description,
                                const std::function<bool(ZoTDescriptionObject, std::string_view)>& isKnown)
{
    UnknownMembers members(description, isKnown);
    walkJson(description, members);
    return std::move(members.found);
}

std::optional<std::vector<EntryName>> findEntryNames(std::string_view description)
{
    EntryNames found;
    walkJson(description, found);
    return std::move(found.names);
}

}  // namespace TrellanTool
