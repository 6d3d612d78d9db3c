// A walk over the parser's events. They do not tell where they are, so the parser reads through an iterator that
// counts: at an event it has just read the token's last byte, and the token begins behind the one before, with nothing
// but blanks and separators between them.
#include "tool/documents/JsonPlaces.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

#include "json/Json.h"

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
    CountingIterator operator++(int)
    {
        CountingIterator before = *this;
        ++*this;
        return before;
    }
    bool operator==(const CountingIterator& other) const { return position == other.position; }
    bool operator!=(const CountingIterator& other) const { return position != other.position; }

private:
    const char* position;
    std::size_t* count;
};

class LineIndex {
public:
    explicit LineIndex(std::string_view text)
    {
        for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', end + 1)) {
            begins.push_back(end + 1);
        }
    }

    TextPlace placeOf(std::size_t offset) const
    {
        const auto next = std::upper_bound(begins.begin(), begins.end(), offset);
        return {static_cast<std::size_t>(next - begins.begin()), offset - *std::prev(next) + 1};
    }

private:
    std::vector<std::size_t> begins{0};
};

void appendToken(std::string& pointer, std::string_view key)
{
    pointer += '/';
    for (const char character : key) {
        if (character == '~') {
            pointer += "~0";
        } else if (character == '/') {
            pointer += "~1";
        } else {
            pointer += character;
        }
    }
}

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
    return reason;
}

// Follows the parser with the JSON Pointer of where it is.
class Walk final : public nlohmann::json_sax<Json> {
public:
    struct Duplicate {
        std::string pointer;
        std::size_t offset;
    };

    struct Fault {
        std::size_t offset;
        std::string reason;
        bool isEnd = false;  // the text ends too early
    };

    Walk(std::string_view text, const std::vector<std::string>& wanted) : text(text)
    {
        for (const std::string& place : wanted) {
            offsets.emplace(place, nowhere);
        }
    }

    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    std::size_t count = 0;  // bytes that the parser has read
    std::unordered_map<std::string, std::size_t> offsets;
    std::vector<Duplicate> duplicates;
    std::optional<Fault> fault;

    bool null() override { return scalar(); }
    bool boolean(bool) override { return scalar(); }
    bool number_integer(number_integer_t) override { return scalar(); }
    bool number_unsigned(number_unsigned_t) override { return scalar(); }
    bool number_float(number_float_t, const string_t&) override { return scalar(); }
    bool string(string_t&) override { return scalar(); }
    bool binary(binary_t&) override { return false; }

    bool start_object(std::size_t) override { return open(true); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(false); }
    bool end_array() override { return close(); }

    bool key(string_t& name) override
    {
        Container& object = containers.back();
        pointer.resize(object.pointerLength);
        appendToken(pointer, name);
        const std::size_t begin = tokenBegin();
        note(begin);
        if (!object.keys.insert(name).second) {
            duplicates.push_back({pointer, begin});
        }
        previousEnd = count;
        return true;
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
        fault = Fault{offset, std::move(reason), position > text.size()};
        return false;
    }

private:
    struct Container {
        bool isObject;
        std::size_t pointerLength;  // of its own pointer
        std::size_t elements;       // of an array, as far as read
        std::unordered_set<std::string> keys;
    };

    std::size_t tokenBegin() const
    {
        const std::size_t begin = text.find_first_not_of(" \t\r\n,:", previousEnd);
        return begin == std::string_view::npos ? text.size() : begin;
    }

    void note(std::size_t offset)
    {
        const auto found = offsets.find(pointer);
        if (found != offsets.end()) {
            found->second = offset;
        }
    }

    // A value begins at `offset`. A member's place is that of its key.
    void beginValue(std::size_t offset)
    {
        if (containers.empty()) {
            note(offset);
        } else if (!containers.back().isObject) {
            pointer.resize(containers.back().pointerLength);
            appendToken(pointer, std::to_string(containers.back().elements++));
            note(offset);
        }
    }

    bool scalar()
    {
        beginValue(tokenBegin());
        previousEnd = count;
        return true;
    }

    bool open(bool isObject)
    {
        beginValue(count - 1);
        if (containers.size() == maxDepth) {
            fault = Fault{count - 1, "more than 512 nested levels", false};
            return false;
        }
        containers.push_back({isObject, pointer.size(), 0, {}});
        previousEnd = count;
        return true;
    }

    bool close()
    {
        pointer.resize(containers.back().pointerLength);
        containers.pop_back();
        previousEnd = count;
        return true;
    }

    std::string_view text;
    std::size_t previousEnd = 0;  // of the last token; behind a number one byte more may have been read
    std::string pointer;
    std::vector<Container> containers;
};

}  // namespace

std::string pointerToMember(std::string pointer, std::string_view key)
{
    appendToken(pointer, key);
    return pointer;
}

// The parser takes a NUL for the end of the text; the text is read up to it.
JsonPlaces findJsonPlaces(std::string_view whole, const std::vector<std::string>& pointers)
{
    const std::size_t nul = whole.find('\0');
    const std::string_view text = whole.substr(0, nul);
    Walk walk(text, pointers);
    const CountingIterator begin(text.data(), &walk.count);
    const CountingIterator end(text.data() + text.size(), &walk.count);
    Json::sax_parse(begin, end, &walk, Json::input_format_t::json, true);

    if (nul != std::string_view::npos && (!walk.fault || walk.fault->isEnd)) {
        walk.fault = {nul, "a NUL character", false};
    }
    const LineIndex lines(text);
    JsonPlaces result;
    if (walk.fault) {
        result.fault = {lines.placeOf(std::min(walk.fault->offset, text.size())), walk.fault->reason};
    }
    for (const Walk::Duplicate& duplicate : walk.duplicates) {
        result.duplicateKeys.push_back({duplicate.pointer, lines.placeOf(duplicate.offset)});
    }
    for (const std::string& pointer : pointers) {
        const std::size_t offset = walk.offsets.at(pointer);
        result.places.push_back(offset == Walk::nowhere ? std::nullopt : std::optional(lines.placeOf(offset)));
    }
    return result;
}

}  // namespace TrellanTool
