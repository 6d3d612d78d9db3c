// The first files that fit elements, against trying each file with each element.
#include "assignment/AssignmentFixture.h"
#include "assignment/FirstFits.h"
#include "assignment/RandomData.h"
#include "base/Pointers.h"

namespace {

using nlohmann::ordered_json;
using ZoNUpdateAssignment::firstFits;
using ZoNUpdateBase::pointersTo;
using Fits = std::vector<std::optional<std::uint32_t>>;

struct World {
    World(RandomData& data, std::size_t numberOfElements, std::size_t numberOfFiles)
    {
        for (std::size_t i = 0; i < numberOfElements; ++i) {
            data.fill(elements.emplace_back());
        }
        for (std::size_t i = 0; i < numberOfFiles; ++i) {
            files.push_back(fileOf(data.entry()));
        }
    }

    Fits byTryingEach() const
    {
        Fits fits;
        for (const Element& element : elements) {
            std::optional<std::uint32_t>& first = fits.emplace_back();
            for (std::uint32_t index = 0; index < files.size() && !first; ++index) {
                std::string path;
                if (ZoCUpdateAssignment::matches(element, files[index], path)) {
                    first = index;
                }
            }
        }
        return fits;
    }

    ZoCUpdateInventory::ElementList elements;
    std::vector<File> files;
};

// Compares many worlds of about `elements` elements, and makes sure that they are neither such that all of them get a
// file nor that none does.
void compareWorlds(unsigned count, const RandomData::Style& style, unsigned elements = 8)
{
    std::ptrdiff_t without = 0;
    std::ptrdiff_t all = 0;
    for (unsigned seed = 1; seed <= count; ++seed) {
        RandomData data(seed, style);
        const World world(data, elements / 8 + data.below(elements), 1 + data.below(20));
        const Fits expected = world.byTryingEach();
        ASSERT_EQ(firstFits(pointersTo(world.elements), world.files), expected) << "seed " << seed;
        without += std::count(expected.begin(), expected.end(), std::nullopt);
        all += std::ssize(expected);
    }
    EXPECT_GT(without, all / 10);
    EXPECT_LT(without, all / 10 * 9);
}

TEST(FirstFits, AreThoseOfTryingEachFileInSmallWorlds)
{
    compareWorlds(3000, {.types = 2, .ids = 1, .statedOneIn = 6});
}

TEST(FirstFits, AreThoseOfTryingEachFileWhereFilesAcceptMuch)
{
    compareWorlds(2000, {.types = 2, .ids = 1, .longestList = 16, .statedOneIn = 1});
}

TEST(FirstFits, AreThoseOfTryingEachFileWhereFilesAcceptMuchAndElementsDiffer)
{
    compareWorlds(60, {.types = 1, .ids = 1, .longestList = 16, .statedOneIn = 1}, 400);
}

}  // namespace
