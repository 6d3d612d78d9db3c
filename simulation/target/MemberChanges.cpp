// The text is put together from what stays and the new values, from its start on.
#include "simulation/target/MemberChanges.h"

#include "json/Json.h"
#include "simulation/target/JsonCursor.h"

namespace TrellanSimulation {

namespace {

// Takes what stays of a text, piece by piece, and what comes in between.
class ChangedText {
public:
    explicit ChangedText(std::string_view text) : text(text) { changed.reserve(text.size()); }

    // Puts `replacement` in the place of what stands from `start` to `end`, which lies behind all that was replaced.
    void replace(std::size_t start, std::size_t end, std::string_view replacement)
    {
        changed.append(text, done, start - done).append(replacement);
        done = end;
    }

    std::string take()
    {
        changed.append(text, done);
        return std::move(changed);
    }

private:
    std::string_view text;
    std::size_t done = 0;
    std::string changed;
};

template <class Value>
std::string written(const Value& value)
{
    return TrellanJson::json(value).dump();
}

std::string written(const NewValue& value)
{
    return std::visit([](const auto& content) { return written(content); }, value);
}

struct Range {
    std::size_t start = 0;
    std::size_t end = 0;
};

void changeObject(std::string_view text, std::size_t offset, MemberChanges changes, ChangedText& changed)
{
    std::map<std::string, Range> values;  // of the members to be changed
    JsonCursor::Member last;
    JsonCursor cursor(text, offset);
    std::size_t end = offset;
    cursor.forEachMember([&](JsonCursor::Member member) {
        cursor.skip();
        end = cursor.offset();
        if (changes.contains(member.name)) {
            values[member.name] = {member.valueStart, end};
        }
        last = std::move(member);
    });
    std::map<std::size_t, std::string> inOrder;  // names, by where their values stand
    for (const auto& [name, range] : values) {
        inOrder[range.start] = name;
    }
    for (const auto& [start, name] : inOrder) {
        changed.replace(start, values[name].end, written(changes.extract(name).mapped()));
    }
    for (const auto& [name, value] : changes) {
        changed.replace(end, end, ",");
        changed.replace(end, end, text.substr(last.start, last.nameStart - last.start));
        changed.replace(end, end, written(name));
        changed.replace(end, end, text.substr(last.nameEnd, last.valueStart - last.nameEnd));
        changed.replace(end, end, written(value));
    }
}

}  // namespace

std::string withChanges(std::string_view text, const std::map<std::size_t, MemberChanges>& changes)
{
    ChangedText changed(text);
    for (const auto& [offset, members] : changes) {
        changeObject(text, offset, members, changed);
    }
    return changed.take();
}

}  // namespace TrellanSimulation
