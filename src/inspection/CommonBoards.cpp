#include "inspection/CommonBoards.h"

#include <algorithm>
#include <utility>

#include "inspection/AcceptedLists.h"

namespace ZoNUpdateInspection {
namespace {

// Up to so many are compared with each other: most files are written by one or two entries.
constexpr std::size_t fewOthers = 16;

class EarlierWriters {
public:
    EarlierWriters(const WriterRows& rows, AcceptedLists& lists) : others(rows.others), lists(lists)
    {
        if (others.size() > fewOthers) {
            addIndexes();
        }
    }

    std::optional<std::uint32_t> firstInCommonWith(const WrittenBoards& writer, std::uint32_t end)
    {
        if (others.size() > fewOthers) {
            return firstOfCandidates(writer, end);
        }
        for (std::uint32_t other = 0; other < end; ++other) {
            if (haveCommonBoard(others[other], writer)) {
                return other;
            }
        }
        return std::nullopt;
    }

private:
    using Holder = std::pair<std::uint64_t, std::uint32_t>;  // a value, and one of the others that accepts it
    using Index = std::vector<Holder>;                       // ascending
    using Range = std::pair<Index::const_iterator, Index::const_iterator>;

    void addIndexes()
    {
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            for (std::uint32_t other = 0; other < others.size(); ++other) {
                for (const std::uint64_t value : *others[other][i]) {
                    indexes[i].emplace_back(value, other);
                }
            }
            std::sort(indexes[i].begin(), indexes[i].end());
        }
    }

    bool haveCommonBoard(const WrittenBoards& a, const WrittenBoards& b)
    {
        return std::equal(a.begin(), a.end(), b.begin(), [&](const auto* listOfA, const auto* listOfB) {
            return lists.intersect(*listOfA, *listOfB);
        });
    }

    std::optional<std::uint32_t> firstOfCandidates(const WrittenBoards& writer, std::uint32_t end)
    {
        std::optional<std::uint32_t> first;
        for (const auto& [candidate, behind] : fewestCandidates(writer, end)) {
            const auto found = std::find_if(candidate, behind, [&](const Holder& holder) {
                return (first && holder.second >= *first) || haveCommonBoard(others[holder.second], writer);
            });
            if (found != behind && (!first || found->second < *first)) {
                first = found->second;
            }
        }
        return first;
    }

    // The holders, up to `end`, of the values of that list of which there are the fewest.
    std::vector<Range> fewestCandidates(const WrittenBoards& writer, std::uint32_t end) const
    {
        std::vector<Range> fewest;
        std::optional<std::ptrdiff_t> fewestCount;
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            std::vector<Range> candidates;
            std::ptrdiff_t count = 0;
            for (const std::uint64_t value : *writer[i]) {
                const auto first = std::lower_bound(indexes[i].begin(), indexes[i].end(), Holder(value, 0));
                const auto behind = std::lower_bound(first, indexes[i].end(), Holder(value, end));
                if (first != behind) {
                    candidates.emplace_back(first, behind);
                    count += behind - first;
                }
            }
            if (!fewestCount || count < *fewestCount) {
                fewestCount = count;
                fewest = std::move(candidates);
            }
        }
        return fewest;
    }

    const std::vector<WrittenBoards>& others;
    AcceptedLists& lists;
    std::array<Index, std::tuple_size_v<WrittenBoards>> indexes;
};

}  // namespace

std::vector<std::optional<std::uint32_t>> firstInCommon(const WriterRows& rows, AcceptedLists& lists)
{
    EarlierWriters earlier(rows, lists);
    std::vector<std::optional<std::uint32_t>> found;
    found.reserve(rows.writers.size());
    for (std::size_t i = 0; i < rows.writers.size(); ++i) {
        found.push_back(earlier.firstInCommonWith(rows.writers[i], rows.before[i]));
    }
    return found;
}

}  // namespace ZoNUpdateInspection
