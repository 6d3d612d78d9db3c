#include "base/TextWrap.h"

namespace ZoNUpdateBase {
namespace {

constexpr std::size_t shortestPiece = 5;  // characters before the blank at which a piece may end

std::size_t pieceLength(std::string_view rest, std::size_t width)
{
    if (rest.size() <= width) {
        return rest.size();
    }
    const std::size_t blank = rest.rfind(' ', width - 1);
    return blank == std::string_view::npos || blank < shortestPiece ? width : blank + 1;
}

}  // namespace

std::vector<std::string_view> wrapText(std::string_view text, std::size_t width)
{
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        const std::size_t length = pieceLength(text, width);
        pieces.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return pieces;
}

}  // namespace ZoNUpdateBase
