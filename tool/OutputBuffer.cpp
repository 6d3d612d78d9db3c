// A stream buffer that shows control characters at a terminal and keeps the order of two streams.
#include "tool/OutputBuffer.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <new>

#include "json/TerminalText.h"
#include "tool/update/RawOutput.h"

namespace TrellanTool {

namespace {

constexpr std::size_t capacity = std::size_t{64} * 1024;

// How many bytes at the end of `text` may become a character with what comes next.
std::size_t unfinished(std::string_view text)
{
    constexpr std::size_t most = 3;
    for (std::size_t length = 1; length <= std::min(most, text.size()); ++length) {
        if (TrellanJson::longCharacter(text.substr(text.size() - length)) > length) {
            return length;
        }
    }
    return 0;
}

}  // namespace

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
    const std::string shown = isTerminal ? TrellanJson::withControlCharactersShown(text) : std::string();
    if (failure == 0 && !writeRaw(descriptor, isTerminal ? shown : text)) {
        failure = errno;
    }
    return failure == 0;
}

}  // namespace TrellanTool
