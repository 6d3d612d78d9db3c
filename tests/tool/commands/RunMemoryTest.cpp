// What a run of the tool costs in memory beside the tool itself, for each byte of the document that it reads.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>

#include "support/AnotherProcess.h"
#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"

namespace {

constexpr std::size_t documentSize =
    10000000;  // of each document, nearly: what does not grow with it counts for little

// A document of as many pieces as go into the size, joined by commas. In a piece "#" is a number of its own.
struct DocumentShape {
    std::string name;
    std::string front;
    std::string piece;
    std::string back;
};

void PrintTo(const DocumentShape& shape, std::ostream* out)
{
    *out << shape.name;
}

std::string documentOf(const DocumentShape& shape, std::size_t size = documentSize)
{
    const auto mark = shape.piece.find('#');
    std::string text = shape.front;
    for (unsigned number = 1; text.size() < size; ++number) {
        text += mark == std::string::npos
                    ? shape.piece
                    : shape.piece.substr(0, mark) + std::to_string(number) + shape.piece.substr(mark + 1);
        text += ',';
    }
    text.pop_back();
    return text + shape.back;
}

// A sound description with a member that the format does not have.
DocumentShape withMember(const std::string& name, const std::string& front, const std::string& piece,
                         const std::string& back)
{
    return {name,
            R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P","archiveName":"N"},"files":[)"
            R"({"name":"a.bin","sequence":1,"boardType":"A","id":1,"version":null,"checksumCrc32":1}],"extra":)" +
                front,
            piece, back + "}"};
}

// A sound description that has an entry, and so many others.
DocumentShape withEntries(
    const std::string& name, const std::string& piece,
    const std::string& first =
        R"({"name":"a.bin","sequence":1,"boardType":"A","id":1,"version":null,"checksumCrc32":1})")
{
    return {name,
            R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P","archiveName":"N"},"files":[)" +
                first + ",",
            piece, "]}"};
}

const std::string longText(500000, 'n');

// Of an entry that writes the same file as all that have this.
const std::string collidingRest = R"("sequence":1,"boardType":"A","checksumCrc32":1,"targetPath":"p"})";

// A list of an entry that is refused for each of its numbers, and entries enough to have that told.
std::string manyNumbers()
{
    std::string entries = R"({"id":1,"boardId":[1)";
    for (int i = 0; i < 2100; ++i) {
        entries += "," + std::to_string(1000000000000000000 + i);
    }
    entries += "]}";
    for (int i = 0; i < 300; ++i) {
        entries += R"(,{"id":1})";
    }
    return entries;
}

class RunMemory : public testing::Test {
protected:
    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizer has a memory of its own";
#endif
    }

    // Most memory that a program which this process has waited for has had, in bytes.
    static std::size_t peak()
    {
        struct rusage usage = {};
        ::getrusage(RUSAGE_CHILDREN, &usage);
        return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    }

    // In tenths; 255 and more: 255, and where the command says that it could not read a document.
    int tenthsForEachByte(const std::vector<std::string>& arguments, std::size_t size = documentSize) const
    {
        return inAnotherProcess([&] {
            runProcess(TRELLAN_TOOL, {"--version"}, folder.path());
            const std::size_t tool = peak();
            const ProcessResult result = runProcess(TRELLAN_TOOL, arguments, folder.path());
            return result.status != 0 && result.status != 1
                       ? 255
                       : static_cast<int>(std::min<std::size_t>((peak() - tool) * 10 / size, 255));
        });
    }

    const TempDir folder;
};

class DescriptionRunMemory : public RunMemory, public testing::WithParamInterface<DocumentShape> {
protected:
    void SetUp() override
    {
        RunMemory::SetUp();
        folder.write("archive/archive.json", documentOf(GetParam()));
        folder.write("archive/a.bin", "123456789");
        folder.write("target.json",
                     target({board("HCN", {{"PRODUCT/BOARD_TYPE", "A"}}, {updateElement(1, {})})}).dump());
    }
};

// Descriptions that are nothing but what a check has something to say of.
class FindingRunMemory : public RunMemory, public testing::WithParamInterface<DocumentShape> {
protected:
    static constexpr std::size_t size = 2000000;  // a finding takes the time of a hundred bytes

    void SetUp() override
    {
        RunMemory::SetUp();
        folder.write("archive/archive.json", documentOf(GetParam(), size));
    }
};

class EntryRunMemory : public DescriptionRunMemory {};

// Sound descriptions of many board objects.
class BoardRunMemory : public FindingRunMemory {
protected:
    void SetUp() override
    {
        FindingRunMemory::SetUp();
        folder.write("archive/a.bin", "123456789");
    }
};

// An entry with these members, and a board object for each of many types.
DocumentShape withBoards(const std::string& name, const std::string& members,
                         const std::string& piece = R"({"boardType":"T#"})")
{
    return {name,
            R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P","archiveName":"N"},"files":[)"
            R"({"name":"a.bin","sequence":1,"version":null,"checksumCrc32":1,)" +
                members + R"(,"boards":[)",
            piece, "]}]}"};
}

const std::string hundredNumbers = [] {
    std::string list = "0";
    for (int i = 1; i < 100; ++i) {
        list += "," + std::to_string(i);
    }
    return "\"hwCompatibilityId\":[" + list + "]";
}();

class TargetRunMemory : public RunMemory, public testing::WithParamInterface<DocumentShape> {
protected:
    void SetUp() override
    {
        RunMemory::SetUp();
        folder.write("target.json", documentOf(GetParam()));
    }
};

}  // namespace

TEST_P(DescriptionRunMemory, OfACheckIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"check", "archive"}), 100);
}

TEST_P(DescriptionRunMemory, OfAnExplanationIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"explain", "archive", "--target", "target.json", "--json"}), 100);
}

TEST_P(DescriptionRunMemory, OfACheckedUpdateIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"update", "archive", "--target", "target.json", "--dry-run", "--json"}), 100);
}

INSTANTIATE_TEST_SUITE_P(Shapes, DescriptionRunMemory,
                         testing::Values(withMember("Numbers", "[", "1", "]"), withMember("Fractions", "[", "0.1", "]"),
                                         withMember("Arrays", "[", "[0]", "]"),
                                         withMember("EmptyObjects", "[", "{}", "]"),
                                         withMember("Objects", "[", R"({"":1})", "]"),
                                         withMember("ManyMembers", "{", R"("#":1)", "}"),
                                         withMember("ManyLines", "[", "1\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n\n", "]")),
                         [](const auto& shape) { return shape.param.name; });

TEST_P(FindingRunMemory, OfACheckIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"check", "archive", "--quiet"}, size), 100);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, FindingRunMemory,
    testing::Values(
        DocumentShape{"EmptyEntries", R"({"files":[)", "{}", "]}"},
        DocumentShape{"EntriesOfNumbers", R"({"files":[)", "1", "]}"},
        DocumentShape{"EmptyBoards", R"({"files":[{"name":"a","boards":[)", "{}", "]}]}"},
        DocumentShape{"UnknownMembers", R"({"files":[)", R"({"a":1,"b":1})", "]}"},
        DocumentShape{"WrongTypes", R"({"files":[)", R"({"name":1,"sequence":"","id":"","mode":1})", "]}"},
        DocumentShape{"Names", R"({"files":[)", R"({"name":"../#"})", "]}"},
        DocumentShape{"NewerEntries", R"({"files":[)", R"({"featureLevel":3})", "]}"},
        DocumentShape{"UnknownMember", R"({"files":[)", R"({"":1})", "]}"},
        DocumentShape{"EmptyEntriesBehindManyNumbers", R"({"files":[)" + manyNumbers() + ",", "{}", "]}"},
        DocumentShape{"NumbersOfOneEntry", R"({"files":[{"id":[)", "99999999999", "]}]}"},
        withEntries("MissingFiles", R"({"name":"a#","sequence":1,"boardType":"A","id":#,"checksumCrc32":1})"),
        DocumentShape{"Duplicates", R"({"files":[],"x":{)", R"("":1)", "}}"},
        DocumentShape{"BoardsOfALongName", R"({"files":[{"name":")" + longText + R"(","boards":[)", "{}", "]}]}"},
        withEntries("CollisionsWithALongName", R"({"name":"a",)" + collidingRest,
                    R"({"name":")" + longText + R"(",)" + collidingRest)),
    [](const auto& shape) { return shape.param.name; });

TEST_P(BoardRunMemory, OfACheckIsHardlyMoreThanTenTimesTheSize)
{
    // A board object of 23 bytes is noted with its type.
    EXPECT_LE(tenthsForEachByte({"check", "archive", "--quiet"}, size), 120);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, BoardRunMemory,
    testing::Values(withBoards("WithAPath", R"("mode":"standard")", R"({"boardType":"T#","targetPath":"q"})"),
                    withBoards("WithPaths", R"("mode":"standard")", R"({"boardType":"T#","targetPath":"q#"})"),
                    withBoards("OfAPathAndAList", R"("targetPath":"q",)" + hundredNumbers),
                    withBoards("OfAnIdAndAList", R"("id":1,)" + hundredNumbers)),
    [](const auto& shape) { return shape.param.name; });

TEST_P(EntryRunMemory, OfAListIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"list", "archive"}), 100);
}

TEST_P(EntryRunMemory, OfTheVersionIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"archive-version", "archive"}), 100);
}

TEST_P(EntryRunMemory, OfAComparisonOfSomeElementsIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"compare", "archive", "--target", "target.json", "--board-types", "A"}), 100);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, EntryRunMemory,
    testing::Values(withEntries("PassedOver", R"({"featureLevel":9})"),
                    withEntries("Minimal", R"({"name":"a","sequence":1,"boardType":"A","id":#,"checksumCrc32":1})"),
                    withEntries("Boards",
                                R"({"name":"a","sequence":1,"checksumCrc32":1,"boards":[{"boardType":"A","id":#}]})")),
    [](const auto& shape) { return shape.param.name; });

class CoveredRunMemory : public RunMemory {};

// An entry of numbers, each of which takes two bytes of the document, and a line of 19 of the text that describes it.
class DescribingRunMemory : public RunMemory {
protected:
    void SetUp() override
    {
        RunMemory::SetUp();
        folder.write("archive/archive.json",
                     documentOf({"Numbers",
                                 R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P",)"
                                 R"("archiveName":"N"},"files":[{"name":"a.bin","sequence":1,"boardType":"A","id":1,)"
                                 R"("version":null,"checksumCrc32":1,"extra":[)",
                                 "1", "]}]}"}));
    }

    static constexpr int tree = 50;
    static constexpr int text = 95;
};

// Each entry is for all board types but one and takes from those behind it, so that each type has entries of its own.
TEST_F(CoveredRunMemory, IsThatOfTheEntriesWhateverNumberOfBoardTypesTellsThem)
{
    constexpr unsigned count = 250;
    std::string text = R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P","archiveName":"N"},)"
                       R"("files":[)";
    std::string numbers = "0";
    for (unsigned entry = 0; entry < count; ++entry) {
        std::string types;
        for (unsigned type = 0; type < count; ++type) {
            types += type == entry ? "" : (types.empty() ? "\"t" : ",\"t") + std::to_string(type) + "\"";
        }
        text += entry == 0 ? "" : ",";
        text += R"({"name":"a","sequence":1,"id":1,"version":null,"checksumCrc32":0,"boardType":[)" + types +
                R"(],"hwCompatibilityId":[)" + numbers + "]}";
        numbers += "," + std::to_string(entry + 1);
    }
    text += "]}";
    folder.write("archive/archive.json", text);
    folder.write("archive/a", "x");
    EXPECT_LE(tenthsForEachByte({"check", "archive", "--quiet"}, text.size()), 120);
}

TEST_F(DescribingRunMemory, IsThatOfTheDocumentAndOfTheTextOnce)
{
    EXPECT_LE(tenthsForEachByte({"describe", "archive"}), tree + text + 5);
}

TEST_F(DescribingRunMemory, IsTheSameWhereTheTextGoesIntoAFile)
{
    EXPECT_LE(tenthsForEachByte({"describe", "archive", "--output", "described.json"}), tree + text + 5);
}

// A hundred elements that have a long text of their board or unit in common: its size, a hundred times.
class LongTextRunMemory : public RunMemory {
protected:
    static constexpr std::size_t textSize = documentSize / 100;

    static std::string longText() { return std::string(textSize, 'x'); }

    void writeTarget(const nlohmann::ordered_json& parameters) const
    {
        std::vector<nlohmann::ordered_json> elements;
        for (unsigned id = 1; id <= 100; ++id) {
            elements.push_back(updateElement(id, {}));
        }
        folder.write("target.json", target({board("HCN", parameters, elements)}).dump());
    }
};

// What is shown of each element is made for it, and stands in a table that is as wide as its widest row.
TEST_F(LongTextRunMemory, OfInstalledVersionsHasTheNameOfABoardTwiceForEachElement)
{
    writeTarget({{"PRODUCT/BOARD_TYPE", "A"}, {"PRODUCT/NAME", longText()}});
    EXPECT_LE(tenthsForEachByte({"installed", "--target", "target.json"}), 23);
}

// The library's list has the board's name and the element's; the text is not kept.
TEST_F(LongTextRunMemory, OfADocumentOfInstalledVersionsHasItThreeTimes)
{
    writeTarget({{"PRODUCT/BOARD_TYPE", "A"}, {"PRODUCT/NAME", longText()}});
    EXPECT_LE(tenthsForEachByte({"installed", "--target", "target.json", "--json"}), 34);
}

TEST_F(LongTextRunMemory, OfWhatIsNotShownHasItOnce)
{
    writeTarget({{"PRODUCT/BOARD_TYPE", "A"}, {"PRODUCT/UNITNAME", "Box"}, {"UNITNAME", longText()}});
    EXPECT_LE(tenthsForEachByte({"installed", "--target", "target.json"}), 3);
}

TEST_P(TargetRunMemory, OfTheInstalledVersionsIsAtMostTenTimesTheSize)
{
    EXPECT_LE(tenthsForEachByte({"installed", "--target", "target.json"}), 100);
}

TEST_P(TargetRunMemory, OfARecordIsHardlyMoreThanTenTimesTheSize)
{
    // An item that has nothing but an id stands in twelve bytes of text, and is noted in as many beside the tree.
    const int most = GetParam().name == "Items" ? 105 : 100;
    EXPECT_LE(tenthsForEachByte({"record", "--target", "target.json", "--output", "record.json"}), most);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, TargetRunMemory,
    testing::Values(
        DocumentShape{"Items", R"({"tree":{"id":"ROOT","items":[)", R"({"id":"CN"})", "]}}"},
        DocumentShape{"Elements", R"({"tree":{"id":"ROOT","items":[{"id":"CN","items":[{"id":"UPDATE_INFO","items":[)",
                      R"({"id":"UPDATE_ELEMENT","parameters":{"ID":1}})", "]}]}]}}"},
        DocumentShape{"Polls", R"({"tree":{"id":"ROOT"},"script":{"elements":{"/ROOT#1":{"polls":[)", "{}", "]}}}}"},
        DocumentShape{"Errors", R"({"tree":{"id":"ROOT"},"script":{"scan":[{"errors":[)", R"({"code":1,"text":""})",
                      "]}]}}"}),
    [](const auto& shape) { return shape.param.name; });
