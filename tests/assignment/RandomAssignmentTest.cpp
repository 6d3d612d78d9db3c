// Archives and targets at random: the assignment against the plain rule, which tries every file with every element.
#include <algorithm>
#include <optional>

#include "assignment/AssignmentFixture.h"
#include "assignment/RandomData.h"
#include "support/PlatformText.h"

namespace {

using nlohmann::ordered_json;

// The rule: what the file states for the element's board is what the element is.

bool allows(const ordered_json& property, const ordered_json& value)
{
    const auto isIt = [&](const ordered_json& stated) { return stated.type() == value.type() && stated == value; };
    return property.is_array() ? std::any_of(property.begin(), property.end(), isIt) : isIt(property);
}

// The part of the entry for boards of this type: its first board object that names it. Null when there is none.
const ordered_json* partFor(const ordered_json& entry, const std::string& boardType)
{
    if (!entry.contains("boards")) {
        return allows(entry["boardType"], boardType) ? &entry : nullptr;
    }
    for (const ordered_json& board : entry["boards"]) {
        if (allows(board["boardType"], boardType)) {
            return &board;
        }
    }
    return nullptr;
}

bool isForFlashDrive(const ordered_json& entry)
{
    if (entry.contains("targetPath")) {
        return true;
    }
    return entry.contains("boards") && std::any_of(entry["boards"].begin(), entry["boards"].end(),
                                                   [](const auto& board) { return board.contains("targetPath"); });
}

// The file's target path for the element (empty where it states none) when the file is for it; nothing otherwise.
std::optional<std::string> pathIfFor(const Element& element, const ordered_json& entry)
{
    const ordered_json* const part = partFor(entry, str(element.boardType));
    if (part == nullptr || element.isFileSystemElement != isForFlashDrive(entry)) {
        return std::nullopt;
    }
    const auto stated = [&](const char* key, const ordered_json& otherwise) {
        return part->contains(key) ? (*part)[key] : entry.value(key, otherwise);
    };
    const auto path = stated("targetPath", "").get<std::string>();
    if (element.isFileSystemElement) {
        if (str(element.location) != "*" && str(element.location) != path) {
            return std::nullopt;
        }
    } else {
        const ordered_json id = stated("id", nullptr);
        if (id.is_null() || std::min<std::uint64_t>(id.get<std::uint64_t>(), 4294967295) != element.id) {
            return std::nullopt;
        }
    }
    const std::string variant = str(element.variant);
    const bool fits =
        allows(stated("boardVariant", nullptr), variant.empty() ? ordered_json() : ordered_json(variant)) &&
        allows(stated("boardId", 0u), element.productId) &&
        allows(stated("hwCompatibilityId", 0u), element.hwCompatibilityId) &&
        allows(stated("swCompatibilityId", 0u), element.swCompatibilityId);
    return fits ? std::optional(path) : std::nullopt;
}

// The result of an assignment: the file of every element, the number of elements of every file, and where the new
// elements' files go.
struct Assigned {
    std::vector<int> fileOfElement;
    std::vector<unsigned> elementsOfFile;
    std::vector<std::string> newLocations;
};

class RandomAssignment : public AssignmentFixture, public ::testing::WithParamInterface<unsigned> {
protected:
    void fill(unsigned seed, std::size_t numberOfFiles)
    {
        makeTemplate();
        RandomData random(seed);
        for (std::size_t i = 0; i < numberOfElements; ++i) {
            random.fill(addElement());
        }
        for (std::size_t i = 0; i < numberOfFiles; ++i) {
            entries.push_back(random.entry());
            addFile(entries.back());
        }
    }

    // Tries every file with every element, in order.
    Assigned byTheRule()
    {
        Assigned assigned;
        assigned.elementsOfFile.resize(entries.size());
        for (const Element& element : elements()) {
            const auto first = std::find_if(entries.begin(), entries.end(),
                                            [&](const ordered_json& entry) { return pathIfFor(element, entry); });
            give(assigned, first != entries.end() ? static_cast<int>(first - entries.begin()) : -1);
        }
        const Element& model = *updater().getInventory().getFileSystemElementTemplate();
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const auto path = pathIfFor(model, entries[i]);
            if (path && assigned.elementsOfFile[i] == 0) {
                give(assigned, static_cast<int>(i));
                assigned.newLocations.push_back(*path);
            }
        }
        return assigned;
    }

    // What makeAssignment has done.
    Assigned result()
    {
        Assigned assigned{fileIndices(), assignedCounts(), {}};
        for (auto element = std::next(elements().begin(), numberOfElements); element != elements().end(); ++element) {
            assigned.newLocations.push_back(str(element->location));
        }
        return assigned;
    }

    const ordered_json& entry(std::size_t file) const { return entries[file]; }

    static constexpr std::size_t numberOfElements = 300;

private:
    static void give(Assigned& assigned, int file)
    {
        assigned.fileOfElement.push_back(file);
        if (file >= 0) {
            ++assigned.elementsOfFile[static_cast<std::size_t>(file)];
        }
    }

    std::vector<ordered_json> entries;
};

TEST_P(RandomAssignment, GivesTheSameAsTryingEveryFileInOrder)
{
    fill(GetParam(), 15 * GetParam());
    const Assigned expected = byTheRule();
    assignment().makeAssignment();
    EXPECT_EQ(result().fileOfElement, expected.fileOfElement);
    EXPECT_EQ(result().elementsOfFile, expected.elementsOfFile);
    EXPECT_EQ(result().newLocations, expected.newLocations);
}

TEST_P(RandomAssignment, MatchesEachFileAndElementByTheRule)
{
    fill(GetParam(), 30);
    elements().resize(50);
    for (const Element& element : elements()) {
        for (std::size_t i = 0; i < files().size(); ++i) {
            const std::optional<std::string> expected = pathIfFor(element, entry(i));
            std::string path;
            ASSERT_EQ(ZoCUpdateAssignment::matches(element, files()[i], path), expected.has_value()) << entry(i);
            if (expected) {
                ASSERT_EQ(path, element.isFileSystemElement ? *expected : "") << entry(i);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomAssignment, ::testing::Range(1u, 25u));

TEST_F(RandomAssignment, TheDataGiveFilesToManyElementsButNotToAll)
{
    fill(20, 300);
    const Assigned assigned = byTheRule();
    const auto without = std::count(assigned.fileOfElement.begin(), assigned.fileOfElement.begin() + 300, -1);
    EXPECT_GT(without, 30);
    EXPECT_LT(without, 270);
    EXPECT_GT(assigned.newLocations.size(), 3u);
}

}  // namespace
