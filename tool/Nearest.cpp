#include "tool/Nearest.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace TrellanTool {

namespace {

constexpr std::size_t longestCompared = 100;  // whatever is longer is like nothing that there is

// A letter in the wrong case is less wrong than another letter.
std::size_t costOf(char a, char b)
{
    if (a == b) {
        return 0;
    }
    const auto lower = [](char letter) { return std::tolower(static_cast<unsigned char>(letter)); };
    return lower(a) == lower(b) ? 1 : 2;
}

// Twice the number of letters to change, add, take away or swap with the next one.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> before;  // as many letters of a as in `last`, less one
    std::vector<std::size_t> last(b.size() + 1);
    for (std::size_t j = 0; j < last.size(); ++j) {
        last[j] = 2 * j;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::vector<std::size_t> row(b.size() + 1);
        row[0] = last[0] + 2;
        for (std::size_t j = 0; j < b.size(); ++j) {
            row[j + 1] = std::min({last[j] + costOf(a[i], b[j]), row[j] + 2, last[j + 1] + 2});
            if (i > 0 && j > 0 && a[i] == b[j - 1] && a[i - 1] == b[j]) {
                row[j + 1] = std::min(row[j + 1], before[j - 1] + 2);
            }
        }
        before = std::exchange(last, std::move(row));
    }
    return last.back();
}

std::string_view lettersOf(std::string_view word)
{
    return word.substr(std::min(word.find_first_not_of('-'), word.size()));
}

}  // namespace

const std::string& nearest(std::string_view word, const std::vector<std::string>& candidates)
{
    const std::string_view compared = word.substr(0, longestCompared);
    return *std::min_element(candidates.begin(), candidates.end(), [&](const std::string& a, const std::string& b) {
        return distance(compared, a) < distance(compared, b);
    });
}

std::string didYouMean(std::string_view word, const std::vector<std::string>& candidates)
{
    constexpr std::size_t fewest = 2;
    const std::string_view letters = lettersOf(word);
    const auto begun = std::find_if(candidates.begin(), candidates.end(), [&](const std::string& candidate) {
        return letters.size() >= fewest && lettersOf(candidate).starts_with(letters);
    });
    const std::string& meant = begun != candidates.end() ? *begun : nearest(word, candidates);
    const std::string_view other = lettersOf(meant);
    const bool isNear = begun != candidates.end() || distance(letters, other) < std::max(letters.size(), other.size());
    return letters.size() <= longestCompared && isNear ? "; did you mean '" + meant + "'?" : "";
}

}  // namespace TrellanTool
