// Archives and targets at random: the assignment against the plain rule, which tries every file with every element.
#include <algorithm>
#include <optional>
#include <random>

#include "assignment/AssignmentFixture.h"
#include "support/PlatformText.h"

namespace {

using nlohmann::ordered_json;

// Makes entries and elements over few enough values that most elements fit several files.
class RandomData {
public:
    explicit RandomData(unsigned seed) : random(seed) {}

    ordered_json entry()
    {
        ordered_json result = ordered_json::object();
        const bool toFlashDrive = oneIn(3);
        const bool withBoards = oneIn(2);
        bool everyBoardStatesIt = withBoards;
        if (withBoards) {
            for (unsigned count = 1 + random() % 4; count > 0; --count) {
                ordered_json board = {{"boardType", boardType()}};
                addOptional(board);
                if (oneIn(2)) {
                    addDestination(board, toFlashDrive);
                } else {
                    everyBoardStatesIt = false;
                }
                result["boards"].push_back(board);
            }
        } else {
            result["boardType"] = boardType();
        }
        addOptional(result);
        if (!everyBoardStatesIt || oneIn(3)) {
            addDestination(result, toFlashDrive);
        }
        return result;
    }

    void fill(Element& element)
    {
        element.boardType = text(pick(types));
        if (oneIn(2)) {
            element.variant = text(pick(variants));
        }
        element.productId = oneIn(3) ? pick(elementNumbers) : 0;
        element.hwCompatibilityId = oneIn(4) ? pick(elementNumbers) : 0;
        element.swCompatibilityId = oneIn(4) ? pick(elementNumbers) : 0;
        element.isFileSystemElement = oneIn(3);
        element.id = oneIn(20) ? 4294967295u : random() % 6;
        element.location = text(oneIn(12) ? "*" : pick(paths));
    }

private:
    static ZoCString text(const std::string& characters) { return ZoCString(characters.data(), characters.size()); }

    bool oneIn(unsigned n) { return random() % n == 0; }

    template <class Value>
    const Value& pick(const std::vector<Value>& values)
    {
        return values[random() % values.size()];
    }

    ordered_json boardType()
    {
        if (!oneIn(3)) {
            return pick(types);
        }
        ordered_json result = ordered_json::array();
        for (unsigned count = random() % 4; count > 0; --count) {
            result.push_back(pick(types));
        }
        return result;
    }

    ordered_json number()
    {
        if (oneIn(2)) {
            return pick(fileNumbers);
        }
        ordered_json result = ordered_json::array();
        for (unsigned count = random() % 4; count > 0; --count) {
            result.push_back(pick(fileNumbers));
        }
        return result;
    }

    void addOptional(ordered_json& object)
    {
        if (oneIn(3)) {
            object["boardVariant"] = variant();
        }
        if (oneIn(4)) {
            object["boardId"] = number();
        }
        if (oneIn(5)) {
            object["hwCompatibilityId"] = number();
        }
        if (oneIn(5)) {
            object["swCompatibilityId"] = number();
        }
    }

    ordered_json variant()
    {
        if (oneIn(4)) {
            return nullptr;
        }
        if (!oneIn(3)) {
            return oneIn(8) ? "" : pick(variants);
        }
        return {pick(variants), nullptr, pick(variants)};
    }

    void addDestination(ordered_json& object, bool toFlashDrive)
    {
        if (toFlashDrive) {
            object["targetPath"] = oneIn(15) ? "*" : pick(paths);
        } else {
            object["id"] = oneIn(10) ? pick(wideIds) : random() % 6ull;
        }
    }

    // Among them texts that end where another goes on, that look like another kind of value, and with a NUL.
    const std::vector<std::string> types = {"T", "T2", "A", "Apath /x", std::string("T\0Z", 3), "", "X Y", "\xC3\xA4"};
    const std::vector<std::string> variants = {"V1", "V2", "null", "0", std::string("\0v", 2)};
    const std::vector<std::string> paths = {"/a", "/b", "/a/b", "x", "", "/x/", "\\d", std::string("/a\0b", 4)};
    const std::vector<std::uint32_t> elementNumbers = {0, 1, 2, 4294967295};
    const std::vector<std::uint64_t> fileNumbers = {0, 1, 2, 4294967295, 4294967296, 4294967297, 18446744073709551615u};
    const std::vector<std::uint64_t> wideIds = {4294967294, 4294967295, 4294967296, 8589934592, 18446744073709551615u};
    std::mt19937 random;
};

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

class RandomAssignmentTest : public AssignmentFixture, public ::testing::WithParamInterface<unsigned> {
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

TEST_P(RandomAssignmentTest, GivesTheSameAsTryingEveryFileInOrder)
{
    fill(GetParam(), 15 * GetParam());
    const Assigned expected = byTheRule();
    assignment().makeAssignment();
    EXPECT_EQ(result().fileOfElement, expected.fileOfElement);
    EXPECT_EQ(result().elementsOfFile, expected.elementsOfFile);
    EXPECT_EQ(result().newLocations, expected.newLocations);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomAssignmentTest, ::testing::Range(1u, 25u));

TEST_F(RandomAssignmentTest, TheDataGiveFilesToManyElementsButNotToAll)
{
    fill(20, 300);
    const Assigned assigned = byTheRule();
    const auto without = std::count(assigned.fileOfElement.begin(), assigned.fileOfElement.begin() + 300, -1);
    EXPECT_GT(without, 30);
    EXPECT_LT(without, 270);
    EXPECT_GT(assigned.newLocations.size(), 3u);
}

}  // namespace
