#include "tool/commands/SaidText.h"

#include <algorithm>
#include <string_view>

namespace TrellanTool {

namespace {

constexpr std::size_t pieceSize = std::size_t{64} * 1024;

constexpr std::string_view errorLine = "\nERROR:";

}  // namespace

void SaidText::begin(bool keepsAll)
{
    keepsPieces = keepsAll;
    pieces.clear();
    tail.assign(1, '\n');
    hasError = false;
}

void SaidText::add(const std::string& text)
{
    if (keepsPieces) {
        if (pieces.empty() || pieces.back().size() + text.size() > pieceSize) {
            pieces.emplace_back().reserve(pieceSize);
        }
        pieces.back() += text;
    }
    takeTail(text);
}

void SaidText::takeTail(const std::string& text)
{
    const std::size_t begun = std::min(tail.size(), errorLine.size() - 1);  // what may be the beginning of an error
    tail += text;
    if (hasError) {
        return;
    }
    const std::size_t error = tail.find(errorLine, tail.size() - text.size() - begun);
    hasError = error != std::string::npos;
    if (hasError) {
        tail.erase(0, error);
    } else if (tail.size() > pieceSize && text.find('\n') != std::string::npos) {
        tail.erase(0, tail.rfind('\n'));
    }
}

std::string SaidText::errors() const
{
    return hasError ? tail.substr(1, tail.find_last_not_of('\n')) : "";
}

}  // namespace TrellanTool
