// A walk over the parser's events. They do not tell where they are, so the parser reads through an iterator that
// counts: at an event it has just read the token's last byte, and the token begins behind the one before, with nothing
// but blanks and separators between them.
#include "tool/documents/JsonWalk.h"

#include <algorithm>
#include <iterator>

#include "json/Json.h"
#include "json/Shortened.h"

namespace TrellanTool {

namespace {

using Json = TrellanJson::json;

constexpr std::size_t maxDepth = 512;

// Reads a text and tells how far all of its copies have come.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* position, std::size_t* count) : position(position), count(count) {}
    reference operator*() const { return *position; }
    CountingIterator& operator++()
    {
        ++position;
        ++*count;
        return *this;
    }
    bool operator==(const CountingIterator& other) const { return position == other.position; }

private:
    const char* position;
    std::size_t* count;
};

// "[json.exception...] parse error at line 1, column 2: reason; last read: 'bytes'": the reason alone. The place is
// told by the offset, and the bytes may be anything.
std::string reasonOf(const Json::exception& error)
{
    std::string reason = error.what();
    const bool namesPlace = reason.find("parse error at line") != std::string::npos;
    const std::string_view beforeReason = namesPlace ? ": " : "] ";
    if (const std::size_t begin = reason.find(beforeReason); begin != std::string::npos) {
        reason.erase(0, begin + beforeReason.size());
    }
    if (const std::size_t read = reason.find("; last read: '"); read != std::string::npos) {
        reason.erase(read, reason.rfind('\'') + 1 - read);
    }
    return TrellanJson::withShortQuote(reason, "number overflow parsing '");
}

class Walk final : public nlohmann::json_sax<Json> {
public:
    Walk(std::string_view text, JsonVisitor& visitor) : text(text), visitor(visitor) {}

    std::size_t count = 0;  // bytes that the parser has read
    std::optional<JsonFault> fault;
    bool endsEarly = false;  // that is the fault

    bool null() override { return scalar(); }
    bool boolean(bool) override { return scalar(); }
    bool number_integer(number_integer_t) override { return scalar(); }
    bool number_unsigned(number_unsigned_t) override { return scalar(); }
    bool number_float(number_float_t, const string_t&) override { return scalar(); }
    bool binary(binary_t&) override { return false; }

    bool string(string_t& value) override
    {
        visitor.text(tokenBegin(), value);
        return pass();
    }

    bool key(string_t& name) override
    {
        visitor.key(tokenBegin(), name);
        return pass();
    }

    bool start_object(std::size_t) override { return open() && (visitor.openObject(count - 1), pass()); }
    bool start_array(std::size_t) override { return open() && (visitor.openArray(count - 1), pass()); }

    bool end_object() override
    {
        visitor.closeObject();
        return close();
    }

    bool end_array() override
    {
        visitor.closeArray();
        return close();
    }

    bool parse_error(std::size_t position, const std::string&, const Json::exception& error) override
    {
        // The parser tells the last byte that it has read. A token that is wrong as a whole is meant from its
        // beginning on.
        std::size_t offset = position == 0 ? 0 : position - 1;
        std::string reason = reasonOf(error);
        if (reason.find("unexpected") != std::string::npos || reason.find("overflow") != std::string::npos) {
            offset = std::min(offset, tokenBegin());
        }
        fault = JsonFault{offset, std::move(reason)};
        endsEarly = position > text.size();
        return false;
    }

private:
    std::size_t tokenBegin() const
    {
        const std::size_t begin = text.find_first_not_of(" \t\r\n,:", previousEnd);
        return begin == std::string_view::npos ? text.size() : begin;
    }

    bool pass()
    {
        previousEnd = count;
        return true;
    }

    bool scalar()
    {
        visitor.scalar(tokenBegin());
        return pass();
    }

    bool open()
    {
        if (depth == maxDepth) {
            fault = JsonFault{count - 1, "more than 512 nested levels"};
            return false;
        }
        ++depth;
        return true;
    }

    bool close()
    {
        --depth;
        return pass();
    }

    std::string_view text;
    JsonVisitor& visitor;
    std::size_t depth = 0;
    std::size_t previousEnd = 0;  // of the last token; behind a number one byte more may have been read
};

}  // namespace

// The parser takes a NUL for the end of the text; the text is read up to it.
std::optional<JsonFault> walkJson(std::string_view whole, JsonVisitor& visitor)
{
    const std::size_t nul = whole.find('\0');
    const std::string_view text = whole.substr(0, nul);
    Walk walk(text, visitor);
    const CountingIterator begin(text.data(), &walk.count);
    const CountingIterator end(text.data() + text.size(), &walk.count);
    Json::sax_parse(begin, end, &walk, Json::input_format_t::json, true);

    if (nul != std::string_view::npos && (!walk.fault || walk.endsEarly)) {
        return JsonFault{nul, "a NUL character"};
    }
    if (walk.fault) {
        walk.fault->offset = std::min(walk.fault->offset, text.size());
    }
    return walk.fault;
}

std::string stringAt(std::string_view text, std::size_t begin)
{
    std::size_t end = begin + 1;
    while (text[end] != '"') {
        end += text[end] == '\\' ? 2 : 1;
    }
    const std::string_view inside = text.substr(begin + 1, end - begin - 1);
    if (inside.find('\\') == std::string_view::npos) {
        return std::string(inside);
    }
    return Json::parse(text.substr(begin, end + 1 - begin)).get<std::string>();
}

}  // namespace TrellanTool
