// A walk over the text's tokens, along with the pointers that were asked for. Those into an entry, and into a board
// object, are taken up where it begins and given back where it ends.
#include "tool/documents/JsonPlaces.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

#include "tool/documents/DescriptionVisitor.h"
#include "tool/documents/DuplicateKeys.h"
#include "tool/documents/WantedParts.h"

namespace TrellanTool {

namespace {

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

std::string tokenOf(std::string_view key)
{
    std::string token;
    for (const char character : key) {
        token += character == '~' ? "~0" : character == '/' ? "~1" : std::string_view(&character, 1);
    }
    return token;
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
    WantedParts parts;
    std::size_t first = 0;  // position of the first pointer
};

// A part in a scope; null: neither it is asked for nor anything in it.
struct Wanted {
    WantedParts* scope = nullptr;
    WantedParts::Part part = WantedParts::whole;

    template <class Token>
    Wanted find(const Token& token) const
    {
        const auto found = scope != nullptr ? scope->find(part, token) : std::nullopt;
        return found ? Wanted{scope, *found} : Wanted{};
    }

    void note(std::size_t offset) const
    {
        if (scope != nullptr) {
            scope->note(part, offset);
        }
    }
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
        object.current = object.part.scope != nullptr ? object.part.find(tokenOf(name)) : Wanted{};
        object.current.note(begin);
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
        while (next < asked.size()) {
            asked.takePlace(next++, std::nullopt);
        }
        return std::move(duplicates);
    }

private:
    enum class Part { whole, entries, entry, boards, other };

    struct Container {
        bool isObject;
        Part role;
        Wanted part;
        Wanted current;        // the present member or element
        std::size_t position;  // of the present element; of a member where its key begins
        std::size_t keys;
    };

    // The part that begins. A member's place is that of its key.
    Wanted beginValue(std::size_t offset)
    {
        if (containers.empty()) {
            const Wanted whole{&document.parts};
            whole.note(offset);
            return whole;
        }
        Container& container = containers.back();
        if (!container.isObject) {
            ++container.position;
            container.current = beginElement(container);
            container.current.note(offset);
        }
        return container.current;
    }

    Wanted beginElement(const Container& list)
    {
        if (list.role == Part::entries || list.role == Part::boards) {
            Scope& scope = scopeIn(list);
            const auto number = static_cast<std::int32_t>(list.position);
            list.role == Part::entries ? takeUp(scope, number, -1) : takeUp(scope, entryNumber(), number);
            if (scope.parts.size() != 0) {
                return {&scope.parts};
            }
        }
        return list.part.find(list.position);
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
        const Wanted part = beginValue(begin);
        containers.push_back({isObject, role, part, {}, nowhere, keys.begin()});
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
            asked.takePlace(next++, std::nullopt);
        }
        scope.first = next;
        const std::size_t length = pointerLength(entryOf, boardOf);
        for (; next < asked.size() && subjectOfNext() == std::tuple(entryOf, boardOf); ++next) {
            scope.parts.add(asked.at(next).pointer.substr(length));
        }
    }

    void giveBack(Scope& scope)
    {
        for (std::size_t i = 0; i < scope.parts.size(); ++i) {
            asked.takePlace(scope.first + i, scope.parts.offset(i));
        }
        scope.parts.clear();
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
