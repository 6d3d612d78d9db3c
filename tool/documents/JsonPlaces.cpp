// A walk over the text's tokens, along with the pointers that were asked for.
#include "tool/documents/JsonPlaces.h"

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "tool/documents/DuplicateKeys.h"
#include "tool/documents/JsonWalk.h"

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

// The part to which `pointer` leads from `whole`.
Wanted& wantedAt(Wanted& whole, std::string_view pointer)
{
    Wanted* part = &whole;
    while (!pointer.empty()) {
        const std::size_t end = std::min(pointer.find('/', 1), pointer.size());
        std::unique_ptr<Wanted>& below = part->below[std::string(pointer.substr(1, end - 1))];
        if (!below) {
            below = std::make_unique<Wanted>();
        }
        part = below.get();
        pointer.remove_prefix(end);
    }
    return *part;
}

class Places final : public JsonVisitor {
public:
    struct Duplicate {
        std::size_t offset;
        std::string pointer;
    };

    Places(std::string_view text, Wanted& whole) : source(text), whole(whole), keys(text) {}

    void openObject(std::size_t begin) override { open(begin, true); }
    void openArray(std::size_t begin) override { open(begin, false); }
    void text(std::size_t begin, std::string_view) override { beginValue(begin); }
    void scalar(std::size_t begin) override { beginValue(begin); }
    void closeArray() override { containers.pop_back(); }

    void closeObject() override
    {
        const std::vector<std::size_t> repeated = keys.take(containers.back().keys);
        containers.pop_back();
        if (!repeated.empty()) {
            addDuplicates(repeated);
        }
    }

    void key(std::size_t begin, std::string_view name) override
    {
        Container& object = containers.back();
        object.position = begin;
        object.current = nullptr;
        if (object.part != nullptr && !object.part->below.empty()) {
            note(object.current = object.part->find(tokenOf(name)), begin);
        }
        keys.add(begin, name);
    }

    // What was found in the text, valid or not, in its order.
    std::vector<Duplicate> takeDuplicates()
    {
        while (!containers.empty()) {
            containers.back().isObject ? closeObject() : closeArray();
        }
        std::sort(duplicates.begin(), duplicates.end(),
                  [](const Duplicate& a, const Duplicate& b) { return a.offset < b.offset; });
        return std::move(duplicates);
    }

private:
    struct Container {
        bool isObject;
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
            note(&whole, offset);
            return &whole;
        }
        Container& container = containers.back();
        if (!container.isObject) {
            ++container.position;
            const bool isWanted = container.part != nullptr && !container.part->below.empty();
            container.current = isWanted ? container.part->find(std::to_string(container.position)) : nullptr;
            note(container.current, offset);
        }
        return container.current;
    }

    void open(std::size_t begin, bool isObject)
    {
        Wanted* const part = beginValue(begin);
        containers.push_back({isObject, part, nullptr, nowhere, keys.begin()});
    }

    // Of members of the object that was just closed.
    void addDuplicates(const std::vector<std::size_t>& repeated)
    {
        std::string object;
        for (const Container& above : containers) {
            object = pointerToMember(
                std::move(object), above.isObject ? stringAt(source, above.position) : std::to_string(above.position));
        }
        for (const std::size_t offset : repeated) {
            duplicates.push_back({offset, pointerToMember(object, stringAt(source, offset))});
        }
    }

    std::string_view source;
    Wanted& whole;
    DuplicateKeys keys;
    std::vector<Container> containers;
    std::vector<Duplicate> duplicates;
};

}  // namespace

std::string pointerToMember(std::string pointer, std::string_view key)
{
    return std::move(pointer) + '/' + tokenOf(key);
}

JsonPlaces findJsonPlaces(std::string_view text, const std::vector<std::string>& pointers)
{
    Wanted whole;
    for (const std::string& pointer : pointers) {
        wantedAt(whole, pointer);
    }
    Places places(text, whole);
    std::optional<JsonFault> fault = walkJson(text, places);
    std::vector<Places::Duplicate> duplicates = places.takeDuplicates();

    std::vector<std::size_t> offsets{fault ? fault->offset : 0};
    for (const Places::Duplicate& duplicate : duplicates) {
        offsets.push_back(duplicate.offset);
    }
    for (const std::string& pointer : pointers) {
        const std::size_t offset = wantedAt(whole, pointer).offset;
        offsets.push_back(offset == nowhere ? 0 : offset);
    }
    const std::vector<TextPlace> found = placesOf(text, offsets);
    JsonPlaces result;
    if (fault) {
        result.fault = {found.front(), std::move(fault->reason)};
    }
    std::size_t next = 1;
    result.duplicateKeys.reserve(duplicates.size());
    for (Places::Duplicate& duplicate : duplicates) {
        result.duplicateKeys.push_back({std::move(duplicate.pointer), found[next++]});
    }
    for (const std::string& pointer : pointers) {
        const TextPlace& place = found[next++];
        result.places.push_back(wantedAt(whole, pointer).offset == nowhere ? std::nullopt : std::optional(place));
    }
    return result;
}

}  // namespace TrellanTool
