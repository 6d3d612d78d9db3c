#include "tool/Nearest.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace TrellanTool {

namespace {

// A letter in the wrong case is less wrong than another letter.
std::size_t costOf(char a, char b)
{
    if (a == b) {
        return 0;
    }
    const auto lower = [](char letter) { return std::tolower(static_cast<unsigned char>(letter)); };
    return lower(a) == lower(b) ? 1 : 2;
}

// Twice the number of letters to change, add or take away.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j < row.size(); ++j) {
        row[j] = 2 * j;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] += 2;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + costOf(a[i], b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 2, diagonal + 2});
        }
    }
    return row.back();
}

}  // namespace

const std::string& nearest(std::string_view word, const std::vector<std::string>& candidates)
{
    const std::string_view compared = word.substr(0, 100);  // whatever is longer is like nothing that there is
    return *std::min_element(candidates.begin(), candidates.end(), [&](const std::string& a, const std::string& b) {
        return distance(compared, a) < distance(compared, b);
    });
}

}  // namespace TrellanTool
