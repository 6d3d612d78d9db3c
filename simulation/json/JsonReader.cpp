// Two parsers: a fast one, and one that decides where the fast one gives up a number which the format allows (0e400)
// and that has words for what is wrong.
#include "simulation/json/JsonReader.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <new>
#include <nlohmann/json.hpp>
#include <type_traits>

#include "json/Shortened.h"
#include "simulation/json/JsonCharacters.h"

#ifdef __SSE2__
#define RAPIDJSON_SSE2
#endif
#ifdef __clang__
// Its stack adds to a null pointer before it has room, which is nothing to be told of.
#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#endif
#include "simulation/json/InPlaceStream.h"
#ifdef __clang__
#pragma clang attribute pop
#endif

namespace TrellanSimulation {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::size_t readAhead = 16;  // bytes that the fast parser may look at behind the text

// The parser's own allocator does not notice that there is no memory.
class ParserMemory {
public:
    [[maybe_unused]] static constexpr bool kNeedFree = true;

    static void* Malloc(std::size_t size) { return size == 0 ? nullptr : ::operator new(size); }

    static void* Realloc(void* block, std::size_t size, std::size_t newSize)
    {
        void* moved = Malloc(newSize);
        if (moved != nullptr && block != nullptr) {
            std::memcpy(moved, block, std::min(size, newSize));
        }
        Free(block);
        return moved;
    }

    static void Free(void* block) { ::operator delete(block); }
};

using FastParser = rapidjson::GenericReader<rapidjson::UTF8<>, rapidjson::UTF8<>, ParserMemory>;

// Passes events on, and counts the levels. Each handler says whether to go on.
class Levels {
public:
    Levels(JsonEvents& events, std::size_t maxDepth) : events(events), maxDepth(maxDepth) {}

    bool isTooDeep() const { return tooDeep; }

protected:
    bool open(bool object)
    {
        if (depth == maxDepth) {
            tooDeep = true;
            return false;
        }
        ++depth;
        object ? events.openObject() : events.openArray();
        return true;
    }

    bool close(bool object)
    {
        --depth;
        object ? events.closeObject() : events.closeArray();
        return true;
    }

    template <class... Parameters, class... Arguments>
    bool pass(void (JsonEvents::*event)(Parameters...), const Arguments&... arguments)
    {
        (events.*event)(arguments...);
        return true;
    }

private:
    JsonEvents& events;
    const std::size_t maxDepth;
    std::size_t depth = 0;
    bool tooDeep = false;
};

// In text without invalid UTF-8, only an escape can bring a surrogate into a string; the parser lets the second half of
// a pair stand alone.
bool holdsSurrogate(std::string_view text)
{
    for (auto at = text.find('\xED'); at != std::string_view::npos; at = text.find('\xED', at + 1)) {
        if (static_cast<unsigned char>(text[at + 1]) >= 0xA0) {
            return true;
        }
    }
    return false;
}

template <class Stream>
class FastEvents : public Levels {
public:
    using Ch = char;
    using Length = rapidjson::SizeType;

    static constexpr bool inPlace = std::is_same_v<Stream, InPlaceStream>;
    static constexpr unsigned parseFlags = inPlace ? rapidjson::kParseInsituFlag : rapidjson::kParseDefaultFlags;

    FastEvents(JsonEvents& events, std::size_t maxDepth, const std::string& text, const Stream& stream)
        : Levels(events, maxDepth), stream(stream), end(text.data() + text.size())
    {
    }

    bool Null() { return pass(&JsonEvents::null); }
    bool Bool(bool value) { return pass(&JsonEvents::boolean, value); }
    bool Int(int value) { return pass(&JsonEvents::integer, value); }
    bool Uint(unsigned value) { return pass(&JsonEvents::unsignedInteger, value); }
    bool Int64(std::int64_t value) { return pass(&JsonEvents::integer, value); }
    bool Uint64(std::uint64_t value) { return pass(&JsonEvents::unsignedInteger, value); }
    bool RawNumber(const char*, Length, bool) { return false; }

    // The parser's own value may be off in the last digit. Its stream still stands where the number begins.
    bool Double(double roughly)
    {
        double value = 0;
        if (std::from_chars(stream.src_, end, value).ec == std::errc::result_out_of_range) {
            if (std::abs(roughly) > 1) {
                return false;
            }
            value = std::copysign(0.0, roughly);
        }
        return pass(&JsonEvents::real, value);
    }

    bool String(const char* text, Length length, bool) { return passText(&JsonEvents::text, text, length); }

    bool Key(const char* text, Length length, bool) { return passText(&JsonEvents::key, text, length); }

    bool StartObject() { return open(true); }
    bool EndObject(Length) { return close(true); }
    bool StartArray() { return open(false); }
    bool EndArray(Length) { return close(false); }

private:
    bool passText(void (JsonEvents::*event)(std::string_view), const char* text, Length length)
    {
        if (!inPlace && holdsSurrogate({text, length})) {
            return false;
        }
        return pass(event, std::string_view(text, length));
    }

    const Stream& stream;
    const char* const end;
};

using SlowParser = nlohmann::json;

class SlowEvents final : public nlohmann::json_sax<SlowParser>, public Levels {
public:
    using Levels::Levels;

    bool null() override { return pass(&JsonEvents::null); }
    bool boolean(bool value) override { return pass(&JsonEvents::boolean, value); }
    bool number_integer(number_integer_t value) override { return pass(&JsonEvents::integer, value); }
    bool number_unsigned(number_unsigned_t value) override { return pass(&JsonEvents::unsignedInteger, value); }
    bool number_float(number_float_t value, const string_t&) override { return pass(&JsonEvents::real, value); }
    bool string(string_t& value) override { return pass(&JsonEvents::text, value); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(true); }
    bool key(string_t& name) override { return pass(&JsonEvents::key, name); }
    bool end_object() override { return close(true); }
    bool start_array(std::size_t) override { return open(false); }
    bool end_array() override { return close(false); }
    bool parse_error(std::size_t, const std::string&, const SlowParser::exception&) override { return false; }
};

JsonVerdict verdict(bool valid, const Levels& levels)
{
    return valid ? JsonVerdict::valid : levels.isTooDeep() ? JsonVerdict::tooDeep : JsonVerdict::invalid;
}

JsonVerdict readSlowly(const std::string& text, JsonEvents& events, std::size_t maxDepth)
{
    events.begin();
    SlowEvents taker(events, maxDepth);
    return verdict(SlowParser::sax_parse(text, &taker), taker);
}

template <class Stream>
JsonVerdict readFast(std::string& text, JsonEvents& events, std::size_t maxDepth)
{
    Stream stream(text.data() + (text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0));
    events.begin();
    using Taker = FastEvents<Stream>;
    Taker taker(events, maxDepth, text, stream);
    ParserMemory memory;
    const auto result = FastParser(&memory).Parse<Taker::parseFlags>(stream, taker);
    if (result.Code() == rapidjson::kParseErrorNumberTooBig) {
        return readSlowly(text, events, maxDepth);
    }
    return verdict(!result.IsError(), taker);
}

class NoEvents final : public nlohmann::json_sax<SlowParser> {
public:
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return true; }
    bool key(string_t&) override { return true; }
    bool end_object() override { return true; }
    bool start_array(std::size_t) override { return true; }
    bool end_array() override { return true; }

    bool parse_error(std::size_t, const std::string&, const SlowParser::exception& exception) override
    {
        reason = exception.what();
        return false;
    }

    std::string reason;
};

}  // namespace

JsonVerdict readJson(std::string& text, JsonEvents& events, std::size_t maxDepth)
{
    const JsonCharacters characters = charactersOf(text);
    if (!characters.valid) {
        return JsonVerdict::invalid;
    }
    text.reserve(text.size() + readAhead);
    return characters.hasBackslash ? readFast<rapidjson::StringStream>(text, events, maxDepth)
                                   : readFast<InPlaceStream>(text, events, maxDepth);
}

std::string reasonWhyNoJson(const std::string& text)
{
    NoEvents events;
    SlowParser::sax_parse(text, &events);
    const auto mark = events.reason.find("] ");  // behind the parser's own number for the fault
    const std::string reason = mark == std::string::npos ? events.reason : events.reason.substr(mark + 2);
    return TrellanJson::withShortQuote(TrellanJson::withShortQuote(reason, "; last read: '"),
                                       "number overflow parsing '");
}

}  // namespace TrellanSimulation
