// A walk over the text's tokens, along with the pointers that were asked for. Those into an entry, and into a board
// object, are taken up where it begins and given back where it ends.
#include "tool/documents/JsonPlaces.h"

#include <algorithm>
#include <map>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "tool/documents/DescriptionVisitor.h"
#include "tool/documents/DuplicateKeys.h"

namespace TrellanTool {

namespace {

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

// A part that is asked for, or has such parts.
struct Wanted {
    std::size_t offset = nowhere;
    std::map<std::string, std::unique_ptr<Wanted>, std::less<>> below;  // by the pointers' tokens, as they are written

    Wanted* find(std::string_view token) const
    {
        const auto found = below.find(token);
        return found == below.end() ? nullptr : found->second.get();
    }
};

std::string tokenOf(std::string_view key)
{
    std::string token;
    for (const char character : key) {
        token += character == '~' ? "~0" : character == '/' ? "~1" : std::string_view(&character, 1);
    }
    return token;
}

// A part that is asked for, and what it is a part of.
struct WantedPart {
    const Wanted* part;
    const Wanted* parent;
};

// The part to which `pointer` leads from `whole`.
WantedPart wantedAt(Wanted& whole, std::string_view pointer)
{
    Wanted* part = &whole;
    Wanted* parent = &whole;
    while (!pointer.empty()) {
        const std::size_t end = std::min(pointer.find('/', 1), pointer.size());
        std::unique_ptr<Wanted>& below = part->below[std::string(pointer.substr(1, end - 1))];
        if (!below) {
            below = std::make_unique<Wanted>();
        }
        parent = std::exchange(part, below.get());
        pointer.remove_prefix(end);
    }
    return {part, parent};
}

// Finds the lists of entries and of board objects in whose places later ones count: where their keys begin.
class ReplacedLists final : public DescriptionVisitor {
public:
    std::vector<std::size_t> takeKeys()
    {
        std::sort(replaced.begin(), replaced.end());
        return std::move(replaced);
    }

private:
    void beginObject(Part object) override
    {
        if (object == Part::entry) {
            boards = nowhere;
        }
    }

    void beginMember(Part object, std::size_t begin, std::string_view name) override
    {
        if (object == Part::whole && name == "files") {
            replace(files, begin);
        } else if (object == Part::entry && name == "boards") {
            replace(boards, begin);
        }
    }

    void replace(std::size_t& last, std::size_t begin)
    {
        if (last != nowhere) {
            replaced.push_back(last);
        }
        last = begin;
    }

    std::size_t files = nowhere;
    std::size_t boards = nowhere;
    std::vector<std::size_t> replaced;
};

// The pointers into one part of the description, taken up.
struct Scope {
    Wanted whole;
    std::size_t first = 0;          // position
    std::vector<WantedPart> asked;  // from there on
};

class Places final : public JsonVisitor {
public:
    Places(std::string_view text, AskedPointers& asked) : source(text), asked(asked), keys(text)
    {
        ReplacedLists lists;
        walkJson(text, lists);
        replaced = lists.takeKeys();
        takeUp(document, -1, -1);
    }

    void openObject(std::size_t begin) override
    {
        const Part role = containers.empty()                        ? Part::whole
                          : containers.back().role == Part::entries ? Part::entry
                                                                    : Part::other;
        open(begin, true, role);
    }

    void openArray(std::size_t begin) override { open(begin, false, member); }

    void text(std::size_t begin, std::string_view) override { scalar(begin); }

    void scalar(std::size_t begin) override
    {
        beginValue(begin);
        endValue();
    }

    void closeArray() override
    {
        containers.pop_back();
        endValue();
    }

    void closeObject() override
    {
        const std::size_t firstKey = containers.back().keys;
        containers.pop_back();
        std::optional<std::string> object;
        keys.take(firstKey, [&](std::span<const std::size_t> offsets) {
            for (const std::size_t offset : offsets.subspan(1)) {
                if (!object) {
                    object = pointerToPresent();
                }
                duplicates.add(offset, *object);
            }
        });
        endValue();
    }

    void key(std::size_t begin, std::string_view name) override
    {
        Container& object = containers.back();
        object.position = begin;
        object.current = nullptr;
        if (object.part != nullptr && !object.part->below.empty()) {
            note(object.current = object.part->find(tokenOf(name)), begin);
        }
        member = object.role == Part::whole && name == "files"    ? Part::entries
                 : object.role == Part::entry && name == "boards" ? Part::boards
                                                                  : Part::other;
        if (member != Part::other && std::binary_search(replaced.begin(), replaced.end(), begin)) {
            member = Part::other;
        }
        keys.add(begin, name);
    }

    // The text has ended, valid or not: tells what was found.
    FoundMembers finish()
    {
        while (!containers.empty()) {
            containers.back().isObject ? closeObject() : closeArray();
        }
        giveBack(document);
        return std::move(duplicates);
    }

private:
    enum class Part { whole, entries, entry, boards, other };

    struct Container {
        bool isObject;
        Part role;
        Wanted* part;          // null: neither it is asked for nor anything in it
        Wanted* current;       // of the present member or element
        std::size_t position;  // of the present element; of a member where its key begins
        std::size_t keys;
    };

    static void note(Wanted* part, std::size_t offset)
    {
        if (part != nullptr) {
            part->offset = offset;
        }
    }

    // The part that begins. A member's place is that of its key.
    Wanted* beginValue(std::size_t offset)
    {
        if (containers.empty()) {
            note(&document.whole, offset);
            return &document.whole;
        }
        Container& container = containers.back();
        if (!container.isObject) {
            ++container.position;
            container.current = beginElement(container);
            note(container.current, offset);
        }
        return container.current;
    }

    Wanted* beginElement(const Container& list)
    {
        if (list.role == Part::entries || list.role == Part::boards) {
            Scope& scope = scopeIn(list);
            const auto number = static_cast<std::int32_t>(list.position);
            list.role == Part::entries ? takeUp(scope, number, -1) : takeUp(scope, entryNumber(), number);
            if (!scope.asked.empty()) {
                return &scope.whole;
            }
        }
        const bool isWanted = list.part != nullptr && !list.part->below.empty();
        return isWanted ? list.part->find(std::to_string(list.position)) : nullptr;
    }

    void endValue()
    {
        member = Part::other;
        if (!containers.empty() &&
            (containers.back().role == Part::entries || containers.back().role == Part::boards)) {
            giveBack(scopeIn(containers.back()));
        }
    }

    void open(std::size_t begin, bool isObject, Part role)
    {
        Wanted* const part = beginValue(begin);
        containers.push_back({isObject, role, part, nullptr, nowhere, keys.begin()});
        member = Part::other;
    }

    Scope& scopeIn(const Container& list) { return list.role == Part::entries ? entry : board; }

    // Of the present entry: the list of entries is a member of the document.
    std::int32_t entryNumber() const { return static_cast<std::int32_t>(containers[1].position); }

    void takeUp(Scope& scope, std::int32_t entryOf, std::int32_t boardOf)
    {
        const auto subjectOfNext = [&] {
            const AskedPointers::Asked pointer = asked.at(next);
            return std::tuple(pointer.entry, pointer.board);
        };
        while (next < asked.size() && subjectOfNext() < std::tuple(entryOf, boardOf)) {
            ++next;
        }
        scope.first = next;
        const std::size_t length = pointerLength(entryOf, boardOf);
        for (; next < asked.size() && subjectOfNext() == std::tuple(entryOf, boardOf); ++next) {
            scope.asked.push_back(wantedAt(scope.whole, asked.at(next).pointer.substr(length)));
        }
    }

    void giveBack(Scope& scope)
    {
        for (std::size_t i = 0; i < scope.asked.size(); ++i) {
            const auto [part, parent] = scope.asked[i];
            const std::size_t offset = part->offset != nowhere ? part->offset : parent->offset;
            if (offset != nowhere) {
                asked.takePlace(scope.first + i, offset);
            }
        }
        scope = Scope();
    }

    // JSON Pointer to what is open.
    std::string pointerToPresent() const
    {
        std::string pointer;
        for (const Container& above : containers) {
            pointer = pointerToMember(
                std::move(pointer), above.isObject ? stringAt(source, above.position) : std::to_string(above.position));
        }
        return pointer;
    }

    std::string_view source;
    AskedPointers& asked;
    DuplicateKeys keys;
    std::vector<std::size_t> replaced;
    std::vector<Container> containers;
    Part member = Part::other;  // what the present member's value is, if it is an array
    std::size_t next = 0;       // of the pointers
    Scope document, entry, board;
    FoundMembers duplicates;
};

}  // namespace

std::size_t pointerLength(std::int32_t entry, std::int32_t board)
{
    return (entry < 0 ? 0 : ("/files/" + std::to_string(entry)).size()) +
           (board < 0 ? 0 : ("/boards/" + std::to_string(board)).size());
}

std::string pointerToMember(std::string pointer, std::string_view key)
{
    return std::move(pointer) + '/' + tokenOf(key);
}

JsonPlaces findJsonPlaces(std::string_view text, AskedPointers& asked)
{
    Places places(text, asked);
    JsonPlaces found;
    found.fault = walkJson(text, places);
    found.duplicates = places.finish();
    return found;
}

}  // namespace TrellanTool
