// Phases: the rank of a file's sequence number among those of all updates.
#include "assignment/AssignmentFixture.h"

namespace {

using PhaseNumbers = std::vector<unsigned>;

class Phases : public AssignmentFixture {
protected:
    // Adds an element with a file of its own that has this sequence number and is needed.
    Element& addUpdate(std::uint32_t sequence)
    {
        const auto id = static_cast<std::uint32_t>(files().size() + 1);
        addFileForId(id, {{"sequence", sequence}, {"version", "1.0"}});
        return addElement({.id = id});
    }
};

TEST_F(Phases, EveryDistinctSequenceIsAPhase)
{
    for (std::uint32_t sequence : {5u, 3u, 5u, 7u}) {
        addUpdate(sequence);
    }
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{1, 0, 1, 2}));
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 3u);
}

TEST_F(Phases, OneSequenceIsOnePhase)
{
    for (std::uint32_t sequence : {9u, 9u, 9u}) {
        addUpdate(sequence);
    }
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{0, 0, 0}));
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 1u);
}

TEST_F(Phases, SequencesUseAll32Bits)
{
    for (std::uint32_t sequence : {4294967295u, 0u, 2147483648u, 2147483647u}) {
        addUpdate(sequence);
    }
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{3, 0, 2, 1}));
}

TEST_F(Phases, ManyElementsInDescendingOrderAreRanked)
{
    PhaseNumbers expected;
    for (std::uint32_t i = 0; i < 200; ++i) {
        addUpdate(1000 - i / 2 * 3);
        expected.push_back(99 - i / 2);
    }
    assignment().makeAssignment();
    EXPECT_EQ(phases(), expected);
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 100u);
}

TEST_F(Phases, DisabledElementsAndElementsWithoutAFileOpenNoPhase)
{
    addUpdate(1).disabled = true;
    addUpdate(4);
    addElement({.id = 999});
    addUpdate(2);
    addUpdate(3).disabled = true;
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{0, 1, 0, 0, 0}));
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 2u);
}

TEST_F(Phases, UpdatesThatAreNotRequiredOpenNoPhase)
{
    addUpdate(1).version = ZoCVersion("1.0");
    addUpdate(2);
    assignment().makeAssignment();
    EXPECT_TRUE(elements().front().disabled);
    EXPECT_EQ(phases(), (PhaseNumbers{0, 0}));
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 1u);
}

TEST_F(Phases, ForcedUpdatesTakePart)
{
    options.force = true;
    addUpdate(2);
    addUpdate(1).version = ZoCVersion("1.0");
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{1, 0}));
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 2u);
}

TEST_F(Phases, ElementsLeftOutKeepTheirPhase)
{
    Element& disabled = addUpdate(1);
    disabled.disabled = true;
    disabled.phase = 42;
    addUpdate(2);
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{42, 0}));
}

TEST_F(Phases, NewFileSystemElementsTakePart)
{
    makeTemplate();
    addUpdate(2);
    addFile({{"boardType", "T"}, {"targetPath", "/a"}, {"sequence", 1}});
    assignment().makeAssignment();
    EXPECT_EQ(phases(), (PhaseNumbers{1, 0}));
}

TEST_F(Phases, WithoutUpdatesThereIsNoPhase)
{
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 0u);
    addElement();
    assignment().makeAssignment();
    EXPECT_EQ(phases(), PhaseNumbers{0});
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 0u);
    EXPECT_EQ(printed(), "");
}

TEST_F(Phases, ComputingThemAgainCountsOnlyWhatIsStillEnabled)
{
    addUpdate(1);
    addUpdate(2);
    assignment().makeAssignment();
    ASSERT_EQ(assignment().getNumberOfUpdatePhases(), 2u);
    for (Element& element : elements()) {
        element.disabled = true;
    }
    assignment().computeUpdatePhase();
    EXPECT_EQ(assignment().getNumberOfUpdatePhases(), 0u);
    EXPECT_EQ(phases(), (PhaseNumbers{0, 1}));
}

TEST_F(Phases, WithVerboseTheNumberIsPrinted)
{
    options.verbose = true;
    addUpdate(1);
    addUpdate(2);
    assignment().makeAssignment();
    EXPECT_EQ(printed(), "The update process takes 2 phases!\n");
}

TEST_F(Phases, WithVerboseTheNumberIsPrintedAlsoWhenItIsZero)
{
    options.verbose = true;
    assignment().makeAssignment();
    EXPECT_EQ(printed(), "The update process takes 0 phases!\n");
}

TEST_F(Phases, TheOrderIsThatOfTheSequencesAlone)
{
    const ZoCUpdateAssignment::SortElemType low{nullptr, 2147483647u};
    const ZoCUpdateAssignment::SortElemType high{nullptr, 2147483648u};
    EXPECT_TRUE(ZoCUpdateAssignment::lowerThen(low, high));
    EXPECT_FALSE(ZoCUpdateAssignment::lowerThen(high, low));
    EXPECT_FALSE(ZoCUpdateAssignment::lowerThen(low, low));
}

}  // namespace
