// SaidText: what the library has said, kept in pieces, and its errors.
#pragma once

#include <deque>
#include <string>

namespace TrellanTool {

class SaidText {
public:
    // As if nothing had been said. All that is said from now on is kept, or the errors alone.
    void begin(bool keepsAll);

    void add(const std::string& text);

    // The text from the first line on that begins with "ERROR:", without the line ends behind it; empty when none does.
    std::string errors() const;

    // Gives what was kept to `take`, piece by piece.
    template <class Take>
    void forEachPiece(Take take) const
    {
        for (const std::string& piece : pieces) {
            take(piece);
        }
    }

private:
    void takeTail(const std::string& text);

    bool keepsPieces = false;
    std::deque<std::string> pieces;
    bool hasError = false;
    std::string tail =
        "\n";  // from the line end before the first error on; from a late one where there is no error yet
};

}  // namespace TrellanTool
