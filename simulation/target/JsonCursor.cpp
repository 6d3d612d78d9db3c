// The text is known to be valid, so that each value ends where its brackets or quotation marks close.
#include "simulation/target/JsonCursor.h"

#include <algorithm>

#include "json/Json.h"

namespace TrellanSimulation {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t\r\n";

}  // namespace

JsonCursor::JsonCursor(std::string_view text, std::size_t offset) : text(text), at(offset)
{
    if (at == 0 && text.starts_with(byteOrderMark)) {
        at = byteOrderMark.size();
    }
    skipBlanks();
}

void JsonCursor::skip()
{
    if (isObject() || isArray()) {
        skipNested();
    } else if (text[at] == '"') {
        skipText();
    } else {
        at = std::min(text.find_first_of(",]} \t\r\n", at), text.size());
    }
}

// Behind the opening bracket of an object or array; whether it has anything.
bool JsonCursor::enter()
{
    start = ++at;
    skipBlanks();
    const bool empty = text[at] == '}' || text[at] == ']';
    at += empty ? 1 : 0;
    return !empty;
}

// Behind the comma or the closing bracket that follows; whether it was a comma.
bool JsonCursor::goOn()
{
    skipBlanks();
    const bool more = text[at] == ',';
    start = ++at;
    if (more) {
        skipBlanks();
    }
    return more;
}

JsonCursor::Member JsonCursor::takeName()
{
    Member member;
    member.start = start;
    member.nameStart = at;
    skipText();
    member.nameEnd = at;
    const std::string_view written = text.substr(member.nameStart, at - member.nameStart);
    member.name = written.find('\\') == std::string_view::npos ? written.substr(1, written.size() - 2)
                                                               : TrellanJson::json::parse(written).get<std::string>();
    skipBlanks();
    ++at;  // the colon
    skipBlanks();
    member.valueStart = at;
    return member;
}

void JsonCursor::skipBlanks()
{
    at = std::min(text.find_first_not_of(blanks, at), text.size());
}

void JsonCursor::skipText()
{
    at = text.find_first_of("\"\\", at + 1);
    while (text[at] == '\\') {
        at = text.find_first_of("\"\\", at + 2);
    }
    ++at;
}

void JsonCursor::skipNested()
{
    std::size_t open = 0;
    do {
        at = text.find_first_of("\"{}[]", at);
        if (text[at] == '"') {
            skipText();
            continue;
        }
        open += isObject() || isArray() ? 1 : -1;
        ++at;
    } while (open != 0);
}

}  // namespace TrellanSimulation
