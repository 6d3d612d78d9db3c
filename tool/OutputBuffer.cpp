// A stream buffer that shows control characters at a terminal and keeps the order of two streams.
#include "tool/OutputBuffer.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "tool/update/RawOutput.h"

namespace TrellanTool {

namespace {

constexpr std::size_t capacity = 64 * 1024;

// U+0080 to U+009F are this byte and one of 0x80 to 0x9F.
constexpr unsigned char leadOfControl = 0xC2;

void appendShown(std::string& shown, unsigned char byte)
{
    constexpr const char* digits = "0123456789abcdef";
    shown.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
}

bool isSingleControl(unsigned char byte)
{
    return (byte < 0x20 && byte != '\n' && byte != '\r' && byte != '\t') || byte == 0x7F;
}

}  // namespace

std::string withControlCharactersShown(std::string_view text)
{
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if (byte == leadOfControl && next >= 0x80 && next <= 0x9F) {
            appendShown(shown, byte);
            appendShown(shown, next);
            ++i;
        } else if (isSingleControl(byte)) {
            appendShown(shown, byte);
        } else {
            shown += text[i];
        }
    }
    return shown;
}

OutputBuffer::OutputBuffer(int descriptor) : descriptor(descriptor), isTerminal(::isatty(descriptor) == 1)
{
    held.reserve(capacity);
}

OutputBuffer::~OutputBuffer()
{
    writeOut(held);
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
    if (neighbour != nullptr) {
        neighbour->writeHeld();
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

// At a terminal a byte that may be the first half of a control character waits for the next one.
bool OutputBuffer::writeHeld()
{
    const bool half = isTerminal && !held.empty() && static_cast<unsigned char>(held.back()) == leadOfControl;
    const std::size_t whole = held.size() - (half ? 1 : 0);
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
