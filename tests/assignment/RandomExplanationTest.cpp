// What is explained of elements and entries, held against the assignment, over archives and targets at random.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "assignment/AssignmentFixture.h"
#include "assignment/FirstFits.h"
#include "assignment/RandomData.h"
#include "base/Pointers.h"
#include "inspection/Explanation.h"

using ZoNJson::json;
using ZoNUpdateAssignment::firstFits;
using ZoNUpdateAssignment::isMet;
using ZoNUpdateAssignment::matchCriteria;
using ZoNUpdateAssignment::MatchCriterion;
using ZoNUpdateAssignment::Requirements;
using ZoNUpdateBase::pointersTo;
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

// The board object that the comparison names, or the entry.
json objectOf(const File& file, std::int32_t board)
{
    return board < 0 ? json(file.jsonEntry) : json(file.jsonEntry["boards"][static_cast<std::size_t>(board)]);
}

// Criteria of the table that a board object leaves unmet.
std::size_t countUnmet(const Element& element, const File& file, const json& object)
{
    const json noPath("");
    const Requirements requirements(object, file, noPath);
    std::size_t count = 0;
    for (const MatchCriterion& criterion : matchCriteria) {
        count += isMet(criterion, requirements, element) ? 0 : 1;
    }
    // A file has no id, and an element no path: where the kind is unmet, one of them may be counted in vain.
    const MatchCriterion& kind = matchCriteria[MatchCriterion::kind];
    const MatchCriterion& ofKind =
        matchCriteria[element.isFileSystemElement ? MatchCriterion::targetPath : MatchCriterion::id];
    const bool inVain = !isMet(kind, requirements, element) && !isMet(ofKind, requirements, element);
    return count - (inVain ? 1 : 0);
}

using Place = std::tuple<std::size_t, std::size_t, std::int32_t>;  // unmet criteria, file and board object

// The three entries with the fewest unmet criteria, each with the first board object that has the fewest.
std::vector<Place> nearestPlaces(const Element& element, const std::vector<File>& files)
{
    std::vector<Place> nearest;
    for (std::size_t i = 0; i < files.size(); ++i) {
        std::vector<Place> ofFile;
        if (!files[i].jsonEntry.contains("boards")) {
            ofFile.emplace_back(countUnmet(element, files[i], files[i].jsonEntry), i, -1);
        }
        for (std::size_t board = 0; board < files[i].jsonEntry["boards"].size(); ++board) {
            const auto position = static_cast<std::int32_t>(board);
            ofFile.emplace_back(countUnmet(element, files[i], objectOf(files[i], position)), i, position);
        }
        nearest.push_back(*std::min_element(ofFile.begin(), ofFile.end()));
    }
    std::sort(nearest.begin(), nearest.end());
    nearest.resize(3);
    return nearest;
}

// Whether an object states the element's board type.
bool statesType(const Element& element, const json& object)
{
    const File file = fileOf({{"boardType", ""}});
    const json noPath("");
    return isMet(matchCriteria[MatchCriterion::boardType], Requirements(object, file, noPath), element);
}

// The first that states the element's board type.
std::int32_t decidingBoard(const Element& element, const File& file)
{
    std::int32_t board = file.jsonEntry.contains("boards") ? 0 : -1;
    while (!statesType(element, objectOf(file, board))) {
        ++board;
    }
    return board;
}

struct Seen {
    unsigned given = 0;
    unsigned laterBoards = 0;  // candidates for which not the first board object decides
    unsigned several = 0;      // elements that more than one file fits
    unsigned withoutType = 0;  // elements of a board type that no file is for
    unsigned nearestLaterBoards = 0;
    unsigned stated = 0;  // unmet criteria of which the board object or the entry states what is expected
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
            EXPECT_TRUE(areSame(candidates, Explanation(files).compare(element)));
            std::vector<Place> found;
            for (const Comparison& candidate : candidates) {
                found.emplace_back(candidate.unmet.size(), candidate.file, candidate.board);
                seen.nearestLaterBoards += candidate.board > 0 ? 1 : 0;
            }
            EXPECT_EQ(found, nearestPlaces(element, files));
            ++seen.withoutType;
            return;
        }
        std::vector<std::uint32_t> fitting;
        for (const Comparison& candidate : candidates) {
            EXPECT_FALSE(isNamed(candidate, MatchCriterion::boardType));
            EXPECT_TRUE(explanation.isForType(element, candidate.file));
            EXPECT_EQ(candidate.unmet.empty(), isFor(element, files[candidate.file]));
            EXPECT_EQ(explanation.compare(element, candidate.file).unmet, candidate.unmet);
            EXPECT_EQ(candidate.board, decidingBoard(element, files[candidate.file]));
            seen.laterBoards += candidate.board > 0 ? 1 : 0;
            holdExpectedAgainstTheEntry(explanation, candidate, files[candidate.file]);
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

    // Where a property is stated, in the board object or else in the entry, that is what is expected.
    void holdExpectedAgainstTheEntry(const Explanation& explanation, const Comparison& candidate, const File& file)
    {
        const json object = objectOf(file, candidate.board);
        for (const MatchCriterion::Index criterion : candidate.unmet) {
            const char* const property = criterion == MatchCriterion::kind ? "" : matchCriteria[criterion].property;
            if (object.contains(property) || file.jsonEntry.contains(property)) {
                const json& stated = object.contains(property) ? object[property] : file.jsonEntry[property];
                EXPECT_EQ(explanation.expected(candidate, criterion), stated.dump());
                ++seen.stated;
            }
        }
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
        const auto given = firstFits(pointersTo(elements), files);
        std::size_t j = 0;
        for (const Element& element : elements) {
            SCOPED_TRACE("archive " + std::to_string(i) + ", element " + std::to_string(j));
            holdAgainstTheAssignment(element, files, explanation, given[j++]);
        }
    }
    EXPECT_GT(seen.given, 50u);
    EXPECT_GT(seen.several, isAlike ? 50u : 0u);
    EXPECT_TRUE(isAlike || seen.withoutType > 100);
    EXPECT_TRUE(isAlike || seen.nearestLaterBoards > 100);
    EXPECT_GT(seen.laterBoards, 100u);
    EXPECT_GT(seen.stated, 1000u);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomExplanation, testing::Range(0u, 10u));
