// A stream buffer that shows control characters at a terminal and keeps the order of two streams.
#include "tool/OutputBuffer.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <new>

#include "tool/update/RawOutput.h"

namespace TrellanTool {

namespace {

constexpr std::size_t capacity = std::size_t{64} * 1024;

// A character of several bytes in UTF-8: what its first and second byte may be, and how many there are. The others are
// 0x80 to 0xBF.
struct LongForm {
    unsigned char firstFrom, firstTo;
    unsigned char secondFrom, secondTo;
    std::size_t length;
};

constexpr LongForm longForms[] = {{0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3}, {0xE1, 0xEC, 0x80, 0xBF, 3},
                                  {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3}, {0xF0, 0xF0, 0x90, 0xBF, 4},
                                  {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4}};

bool isBetween(unsigned char byte, unsigned char from, unsigned char to)
{
    return byte >= from && byte <= to;
}

// The length of the character of several bytes that `text`, which is not empty, begins with; more than the text has
// where it ends within the character; 0 when it begins with none.
std::size_t longCharacter(std::string_view text)
{
    const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto* const form = std::find_if(std::begin(longForms), std::end(longForms), [&](const LongForm& known) {
        return isBetween(byteAt(0), known.firstFrom, known.firstTo);
    });
    if (form == std::end(longForms) || (text.size() > 1 && !isBetween(byteAt(1), form->secondFrom, form->secondTo))) {
        return 0;
    }
    for (std::size_t i = 2; i < std::min(form->length, text.size()); ++i) {
        if (!isBetween(byteAt(i), 0x80, 0xBF)) {
            return 0;
        }
    }
    return form->length;
}

// How many bytes at the end of `text` may become a character with what comes next.
std::size_t unfinished(std::string_view text)
{
    constexpr std::size_t most = 3;
    for (std::size_t length = 1; length <= std::min(most, text.size()); ++length) {
        if (longCharacter(text.substr(text.size() - length)) > length) {
            return length;
        }
    }
    return 0;
}

void appendShown(std::string& shown, unsigned char byte)
{
    constexpr const char* digits = "0123456789abcdef";
    shown.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
}

// Of a byte that belongs to no character of several bytes.
bool isControl(unsigned char byte)
{
    return (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t') || isBetween(byte, 0x7F, 0x9F);
}

// U+0080 to U+009F.
bool isLongControl(std::string_view character)
{
    return character.size() == 2 && character[0] == '\xC2' && static_cast<unsigned char>(character[1]) <= 0x9F;
}

}  // namespace

std::string withControlCharactersShown(std::string_view text)
{
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = longCharacter(text);
        const bool isLong = length != 0 && length <= text.size();
        const std::string_view character = text.substr(0, isLong ? length : 1);
        if (isLong ? isLongControl(character) : isControl(static_cast<unsigned char>(character[0]))) {
            for (const char byte : character) {
                appendShown(shown, static_cast<unsigned char>(byte));
            }
        } else {
            shown += character;
        }
        text.remove_prefix(character.size());
    }
    return shown;
}

OutputBuffer::OutputBuffer(int descriptor) : descriptor(descriptor), isTerminal(::isatty(descriptor) == 1)
{
    held.reserve(capacity);
}

// Where memory is too short to show what it holds to a terminal, that is lost.
OutputBuffer::~OutputBuffer()
{
    try {
        writeOut(held);
    } catch (const std::bad_alloc&) {
        failure = ENOMEM;
    }
}

OutputBuffer::int_type OutputBuffer::overflow(int_type character)
{
    if (traits_type::eq_int_type(character, traits_type::eof())) {
        return traits_type::not_eof(character);
    }
    const char text = traits_type::to_char_type(character);
    return append({&text, 1}) ? character : traits_type::eof();
}

std::streamsize OutputBuffer::xsputn(const char* text, std::streamsize length)
{
    return append({text, static_cast<std::size_t>(length)}) ? length : 0;
}

int OutputBuffer::sync()
{
    return writeHeld() ? 0 : -1;
}

bool OutputBuffer::append(std::string_view text)
{
    if (neighbour != nullptr && !neighbour->held.empty()) {
        neighbour->writeHeld();
    }
    if (!isTerminal && failure == 0 && text.size() < capacity - held.size()) {
        held.append(text);
        return true;
    }
    const bool endsLine = isTerminal && text.find('\n') != std::string_view::npos;
    while (!text.empty() && failure == 0) {
        const std::string_view piece = text.substr(0, capacity - held.size());
        held.append(piece);
        text.remove_prefix(piece.size());
        if (held.size() == capacity) {
            writeHeld();
        }
    }
    return endsLine ? writeHeld() : failure == 0;
}

// At a terminal the beginning of a character waits for the rest.
bool OutputBuffer::writeHeld()
{
    if (held.empty()) {
        return failure == 0;
    }
    const std::size_t whole = held.size() - (isTerminal ? unfinished(held) : 0);
    const bool written = writeOut(std::string_view(held).substr(0, whole));
    held.erase(0, whole);
    return written;
}

bool OutputBuffer::writeOut(std::string_view text)
{
    const std::string shown = isTerminal ? withControlCharactersShown(text) : std::string();
    if (failure == 0 && !writeRaw(descriptor, isTerminal ? shown : text)) {
        failure = errno;
    }
    return failure == 0;
}

}  // namespace TrellanTool
