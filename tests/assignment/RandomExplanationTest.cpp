// What is explained of elements and entries, held against the assignment, over archives and targets at random.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "assignment/AssignmentFixture.h"
#include "assignment/FirstFits.h"
#include "assignment/RandomData.h"
#include "inspection/Explanation.h"

using ZoNUpdateAssignment::firstFits;
using ZoNUpdateAssignment::MatchCriterion;
using ZoNUpdateInspection::Comparison;
using ZoNUpdateInspection::Explanation;

namespace {

constexpr unsigned archives = 500;  // of each of ten tests
constexpr unsigned filesOfArchive = 6;
constexpr unsigned elementsOfTarget = 10;

std::vector<File> someFiles(RandomData& random)
{
    std::vector<File> files;
    for (unsigned i = 0; i < filesOfArchive; ++i) {
        files.push_back(fileOf(random.entry()));
    }
    return files;
}

void fillTarget(ZoCUpdateInventory::ElementList& elements, RandomData& random)
{
    for (unsigned i = 0; i < elementsOfTarget; ++i) {
        random.fill(elements.emplace_back());
    }
}

bool isFor(const Element& element, const File& file)
{
    std::string path;
    return ZoCUpdateAssignment::matches(element, file, path);
}

bool isOrdered(const std::vector<Comparison>& comparisons)
{
    return std::is_sorted(comparisons.begin(), comparisons.end(), [](const Comparison& a, const Comparison& b) {
        return std::pair(a.unmet.size(), a.file) < std::pair(b.unmet.size(), b.file);
    });
}

bool areSame(const std::vector<Comparison>& some, const std::vector<Comparison>& others)
{
    return std::ranges::equal(some, others, [](const Comparison& a, const Comparison& b) {
        return a.file == b.file && a.board == b.board && a.unmet == b.unmet;
    });
}

bool isNamed(const Comparison& comparison, MatchCriterion::Index criterion)
{
    return std::find(comparison.unmet.begin(), comparison.unmet.end(), criterion) != comparison.unmet.end();
}

struct Seen {
    unsigned given = 0;
    unsigned several = 0;      // elements that more than one file fits
    unsigned withoutType = 0;  // elements of a board type that no file is for
};

class RandomExplanation : public testing::TestWithParam<unsigned> {
protected:
    void holdAgainstTheAssignment(const Element& element, const std::vector<File>& files, Explanation& explanation,
                                  std::optional<std::uint32_t> given)
    {
        const std::vector<Comparison> candidates = explanation.compare(element);
        EXPECT_TRUE(isOrdered(candidates));
        if (candidates.empty() || isNamed(candidates.front(), MatchCriterion::boardType)) {
            EXPECT_EQ(given, std::nullopt);
            EXPECT_EQ(candidates.size(), 3u);
            EXPECT_TRUE(areSame(candidates, Explanation(files).compare(element)));
            ++seen.withoutType;
            return;
        }
        std::vector<std::uint32_t> fitting;
        for (const Comparison& candidate : candidates) {
            EXPECT_FALSE(isNamed(candidate, MatchCriterion::boardType));
            EXPECT_TRUE(explanation.isForType(element, candidate.file));
            EXPECT_EQ(candidate.unmet.empty(), isFor(element, files[candidate.file]));
            EXPECT_EQ(explanation.compare(element, candidate.file).unmet, candidate.unmet);
            if (candidate.unmet.empty()) {
                fitting.push_back(static_cast<std::uint32_t>(candidate.file));
            }
            if (isNamed(candidate, MatchCriterion::kind)) {
                EXPECT_FALSE(isNamed(candidate, MatchCriterion::id));
                EXPECT_FALSE(isNamed(candidate, MatchCriterion::targetPath));
            }
        }
        EXPECT_EQ(given, fitting.empty() ? std::nullopt : std::optional(fitting.front()));
        seen.given += given ? 1 : 0;
        seen.several += fitting.size() > 1 ? 1 : 0;
    }

    Seen seen;
};

}  // namespace

TEST_P(RandomExplanation, NamesNoUnmetCriterionExactlyWhereTheFileFits)
{
    // Every other one so alike that several files fit one element.
    RandomData::Style alike;
    alike.types = 2;
    alike.ids = 2;
    alike.statedOneIn = 12;
    const bool isAlike = GetParam() % 2 == 0;
    RandomData random(GetParam(), isAlike ? alike : RandomData::Style());
    for (unsigned i = 0; i < archives; ++i) {
        const std::vector<File> files = someFiles(random);
        ZoCUpdateInventory::ElementList elements;
        fillTarget(elements, random);
        Explanation explanation(files);
        const auto given = firstFits(elements, files);
        std::size_t j = 0;
        for (const Element& element : elements) {
            SCOPED_TRACE("archive " + std::to_string(i) + ", element " + std::to_string(j));
            holdAgainstTheAssignment(element, files, explanation, given[j++]);
        }
    }
    EXPECT_GT(seen.given, 50u);
    EXPECT_GT(seen.several, isAlike ? 50u : 0u);
    EXPECT_TRUE(isAlike || seen.withoutType > 100);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomExplanation, testing::Range(0u, 10u));
