// The text of a document without the blanks between its tokens, which may be most of it.
#include "simulation/libZoJsonLib/DocumentText.h"

#include <string_view>
#include <vector>

namespace {

constexpr std::size_t chunkSize = 65536;

// Copies a document's text piece by piece and leaves out the blanks that mean nothing. It need not understand what is
// not valid JSON: up to the first mistake it knows for sure what is within a string.
class BlankRemover {
public:
    explicit BlankRemover(std::string& text) : text(text) {}

    void append(std::string_view piece)
    {
        for (const char character : piece) {
            append(character);
        }
    }

private:
    static bool isBlank(char character)
    {
        return character == ' ' || character == '\n' || character == '\t' || character == '\r';
    }

    void append(char character)
    {
        const bool blank = !inString && isBlank(character);
        if (!blank || !afterBlank) {
            text += character;
        }
        afterBlank = blank;
        if (character == '"' && !escaped) {
            inString = !inString;
        }
        escaped = inString && character == '\\' && !escaped;
    }

    std::string& text;
    bool inString = false;
    bool escaped = false;
    bool afterBlank = false;
};

}  // namespace

std::optional<std::string> readDocumentText(std::FILE* stream)
{
    std::string text;
    BlankRemover remover(text);
    std::vector<char> chunk(chunkSize);
    while (const std::size_t length = std::fread(chunk.data(), 1, chunk.size(), stream)) {
        const std::string_view piece(chunk.data(), length);
        if (piece.find('\0') != std::string_view::npos) {
            return std::nullopt;
        }
        remover.append(piece);
    }
    if (std::ferror(stream) != 0) {
        return std::nullopt;
    }
    return text;
}
