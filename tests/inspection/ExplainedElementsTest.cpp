// What it costs to explain many elements, in requests for memory: each comparison of an element with an entry makes
// some.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "Inspecting.h"
#include "allocations/Allocations.h"

using nlohmann::ordered_json;

namespace {

class ExplainedElements : public Inspecting {
protected:
    // Requests while `count` elements are explained, each on a board of a type of its own that none of the `count`
    // entries is for, and of the version of hardware that `hardware` makes of its number.
    std::size_t requestsFor(unsigned count, unsigned (*hardware)(unsigned))
    {
        boards.clear();
        entries.clear();
        for (unsigned i = 0; i < count; ++i) {
            boards.push_back(board("IOMODULE[" + std::to_string(i + 1) + "]",
                                   {{"PRODUCT/BOARD_TYPE", "FOREIGN" + std::to_string(i)}},
                                   {installed(1, {{"HW_COMPATIBILITY_ID", hardware(i)}})}));
            entries.push_back(fileEntry("file.bin", {{"boardType", "T" + std::to_string(i)}, {"boardId", 1}}));
        }
        apply();
        EXPECT_EQ(inspector->getElementCount(), count);
        return allocationsOf([&] {
            for (unsigned i = 0; i < count; ++i) {
                EXPECT_EQ(inspector->explainElement(i), 3u);
            }
        });
    }
};

}  // namespace

TEST_F(ExplainedElements, HaveTheCandidatesOfTheLastExplanationAlone)
{
    boards = {hcnBoard({installed(1)})};
    entries = {fileEntry("file.bin"), fileEntry("other.bin", {{"id", 2}})};
    apply();
    EXPECT_THROW(inspector->getCandidate(0), std::out_of_range);
    ASSERT_EQ(inspector->explainElement(0), 2u);
    inspector->getCandidate(1);
    EXPECT_THROW(inspector->getCandidate(2), std::out_of_range);
}

TEST_F(ExplainedElements, WithoutABoardVariantHaveNullInPlaceOfTheOneThatIsAskedFor)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("file.bin", 1, {{"boardVariant", "B"}})};
    apply();
    ASSERT_EQ(inspector->explainElement(0), 1u);
    ASSERT_EQ(inspector->getUnmetCount(0), 1u);
    EXPECT_EQ(inspector->getUnmet(0, 0).criterion, "boardVariant");
    EXPECT_EQ(inspector->getUnmet(0, 0).expected, "\"B\"");
    EXPECT_EQ(inspector->getUnmet(0, 0).actual, "null");
}

TEST_F(ExplainedElements, AreHeldAgainstTheArchiveThatWasReadLast)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("file.bin", 1, {{"boardVariant", "B"}})};
    apply();
    ASSERT_EQ(inspector->explainElement(0), 1u);
    ASSERT_EQ(inspector->getUnmetCount(0), 1u);
    archive->addFile("archive.json", description({ioEntry("file.bin", 1), ioEntry("file.bin", 2)}).dump());
    ASSERT_EQ(updater->apply(), 0u);
    ASSERT_EQ(inspector->explainElement(0), 2u);
    EXPECT_EQ(inspector->getUnmetCount(0), 0u);
    EXPECT_EQ(inspector->getUnmetCount(1), 1u);
}

TEST_F(ExplainedElements, WithTheSameKeysAreHeldAgainstAllEntriesOnceWhateverTheirBoardTypes)
{
    const auto same = [](unsigned) { return 7U; };
    const std::size_t once = requestsFor(200, same);
    const std::size_t twice = requestsFor(400, same);
    EXPECT_LE(twice, once * 22 / 10) << once << " requests for 200 elements and entries";
}

TEST_F(ExplainedElements, AreHeldAgainstAllEntriesOnceForEachSetOfKeys)
{
    const auto oneOfFour = [](unsigned number) { return number % 4; };
    const std::size_t once = requestsFor(200, oneOfFour);
    const std::size_t twice = requestsFor(400, oneOfFour);
    EXPECT_LE(twice, once * 22 / 10) << once << " requests for 200 elements and entries";

    ASSERT_EQ(inspector->explainElement(6), 3u);
    ASSERT_EQ(inspector->getUnmetCount(0), 3u);
    EXPECT_EQ(inspector->getUnmet(0, 0).actual, "\"FOREIGN6\"");
    EXPECT_EQ(inspector->getUnmet(0, 1).criterion, "boardId");
    EXPECT_EQ(inspector->getUnmet(0, 2).actual, "2");
    EXPECT_THROW(inspector->getUnmet(0, 3), std::out_of_range);
}
