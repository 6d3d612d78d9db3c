// Texts of documents in messages: somebody reads them, however long they are.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace TrellanJson {

// As long as the addresses of elements and the paths of files that archives and targets name may be.
constexpr std::size_t longestName = 256;

// `text`, and of one that is longer than `most` bytes its beginning with "..." behind it. Characters of UTF-8 stay
// whole.
inline std::string shortened(std::string_view text, std::size_t most = 80)
{
    if (text.size() <= most) {
        return std::string(text);
    }
    std::size_t length = most;
    while (length > most - 4 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        --length;
    }
    return std::string(text.substr(0, length)) + "...";
}

// `reason`, the words of nlohmann's parser, with the text that it quotes behind `front` shortened.
inline std::string withShortQuote(const std::string& reason, std::string_view front)
{
    constexpr std::string_view behind = "'; expected ";
    constexpr std::size_t mostBehind = 100;
    const std::size_t mark = reason.find(front);
    if (mark == std::string::npos) {
        return reason;
    }
    const std::size_t begin = mark + front.size();
    const std::size_t expected = reason.rfind(behind);
    const bool tellsExpected =
        expected != std::string::npos && expected >= begin && reason.size() - expected <= mostBehind;
    const std::size_t end = std::max(begin, tellsExpected ? expected : reason.rfind('\''));
    return reason.substr(0, begin) + shortened(std::string_view(reason).substr(begin, end - begin)) +
           reason.substr(end);
}

}  // namespace TrellanJson
