// What it costs in memory to read a document, in a process of its own.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <functional>

#include "JsonText.h"
#include "simulation/target/TargetFile.h"
#include "support/AnotherProcess.h"
#include "support/TempDir.h"

namespace {

constexpr std::size_t size = 10000000;  // of each document, nearly: what does not grow with it counts for little

// Documents that cost much for their size, and ordinary ones.
struct Shape {
    const char* name;
    std::function<std::string()> make;
};

// An array of as many `elements` as go into the size; the last one must end with a comma.
std::function<std::string()> arrayOf(const std::string& element)
{
    return [element] {
        std::string text = "[";
        while (text.size() < size) {
            text += element;
        }
        text.back() = ']';
        return text;
    };
}

std::string objectOfManyMembers()
{
    std::string text = "{";
    for (unsigned number = 0; text.size() < size; ++number) {
        text += '"' + std::to_string(number * 7919 % 1000003) + "\":1,";
    }
    text.back() = '}';
    return text;
}

std::string repeated(const std::string& piece, std::size_t times)
{
    std::string text;
    for (std::size_t i = 0; i < times; ++i) {
        text += piece;
    }
    return text;
}

std::string stringOf(const std::string& piece)
{
    return '"' + repeated(piece, size / piece.size()) + '"';
}

// A document of as many `pieces` as go into the size, joined by commas, in each of which the last "#" is a number of
// its own.
std::function<std::string()> withMany(const std::string& front, const std::string& piece, const std::string& back)
{
    return [=] {
        const auto mark = piece.rfind('#');
        std::string text = front;
        for (unsigned number = 2; text.size() < size; ++number) {
            text += mark == std::string::npos ? piece
                                              : piece.substr(0, mark) + std::to_string(number) + piece.substr(mark + 1);
            text += ',';
        }
        text.pop_back();
        return text + back;
    };
}

std::function<std::string()> withItems(const std::string& item)
{
    return withMany(R"({"tree":{"id":"ROOT","items":[)", item, "]}}");
}

std::function<std::string()> withScript(const std::string& front, const std::string& piece, const std::string& back)
{
    return withMany(R"({"tree":{"id":"ROOT"},"script":{)" + front, piece, back + "}}");
}

class DocumentMemory : public ::testing::TestWithParam<Shape> {
protected:
    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the sanitizer has a memory of its own";
#endif
    }

    // The document's file.
    std::filesystem::path write() const
    {
        return folder.write("document.json", GetParam().make());
    }

    // What `read` costs, for each byte of the document, in tenths; 255 and more: 255, and where it fails.
    template <class Read>
    static int tenthsForEachByte(Read read)
    {
        return inAnotherProcess([&] {
            try {
                const std::size_t before = peak();
                read();
                return static_cast<int>(std::min<std::size_t>((peak() - before) * 10 / size, 255));
            } catch (...) {
                return 255;
            }
        });
    }

private:
    // Most memory that this process has had, in bytes.
    static std::size_t peak()
    {
        struct rusage usage = {};
        ::getrusage(RUSAGE_SELF, &usage);
        return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    }

    TempDir folder;
};

}  // namespace

TEST_P(DocumentMemory, OfADescriptionIsAtMostTenTimesItsSize)
{
    const auto path = write();
    EXPECT_LE(tenthsForEachByte([&] {
                  const OpenFile file(std::fopen(path.c_str(), "rb"));
                  const ZoNJson::json document = ZoNJson::json::parse(file.get());
              }),
              100);
}

TEST_P(DocumentMemory, OfATargetFileIsAtMostTenTimesItsSize)
{
    const auto path = write();
    EXPECT_LE(tenthsForEachByte([&] {
                  try {
                      TrellanSimulation::TargetFile file(path);
                  } catch (const TrellanSimulation::DocumentFault&) {
                      return;  // it is a document all the same, and read to its end
                  }
              }),
              100);
}

class TargetFileMemory : public DocumentMemory {};

// With the script and the tree, which are made of the document.
TEST_P(TargetFileMemory, IsAtMostTenTimesTheFilesSize)
{
    const auto path = write();
    EXPECT_LE(tenthsForEachByte([&] {
                  TrellanSimulation::TargetFile file(path);
                  file.makeTree();
              }),
              100);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, DocumentMemory,
    ::testing::Values(Shape{"Numbers", arrayOf("1,")}, Shape{"EmptyArrays", arrayOf("[],")},
                      Shape{"EmptyObjects", arrayOf("{},")}, Shape{"EmptyStrings", arrayOf("\"\",")},
                      Shape{"Nulls", arrayOf("null,")}, Shape{"Arrays", arrayOf("[1],")},
                      Shape{"Pairs", arrayOf("[1,1],")}, Shape{"Fractions", arrayOf("[1.1],")},
                      Shape{"WideNumbers", arrayOf("[18446744073709551615],")}, Shape{"Objects", arrayOf("{\"\":1},")},
                      Shape{"Strings", arrayOf("\"12345678\",")}, Shape{"StringsOfNine", arrayOf("\"123456789\",")},
                      Shape{"Escapes", arrayOf("\"\\u00e4\",")},
                      Shape{"DeepArrays", arrayOf(repeated("[", 500) + repeated("]", 500) + ",")},
                      Shape{"DeepObjects", arrayOf(repeated("{\"\":", 500) + "1" + repeated("}", 500) + ",")},
                      Shape{"ManyMembers", objectOfManyMembers},
                      Shape{"OneString", [] { return stringOf("abcdefgh"); }},
                      Shape{"OneStringOfEscapes", [] { return stringOf("\\n"); }},
                      Shape{"OneStringOfTwoByteCharacters", [] { return stringOf("\xC3\xA4"); }},
                      Shape{"Blanks", [] { return repeated(" ", size) + "1"; }}, Shape{"NoJson", arrayOf("[],]")},
                      Shape{"NoEnd", [] { return '"' + repeated("a", size); }},
                      Shape{"NoEndOfEscapes", [] { return '"' + repeated("\\n", size / 2); }},
                      Shape{"OneNumber", [] { return repeated("1", size); }}),
    [](const auto& shape) { return shape.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Shapes, TargetFileMemory,
    ::testing::Values(
        Shape{"Items", withItems("{\"id\":\"CN\"}")},
        Shape{"ItemsBelowEachOther", withItems(R"({"id":"CN","items":[{"id":"CN"}]})")},
        Shape{"ItemsWithAParameter", withItems(R"({"id":"CN","parameters":{"ID":1}})")},
        Shape{"UpdateElements", withItems(R"({"id":"UPDATE_ELEMENT","parameters":{"ID":1}})")},
        Shape{"ParametersOfManyNames", withMany(R"({"tree":{"id":"ROOT","parameters":{)", "\"ID[#]\":1", "}}}")},
        Shape{"ParametersOfManyLongNames", withMany(R"({"tree":{"id":"ROOT","parameters":{)", "\"ID/ID[#]\":1", "}}}")},
        Shape{"Scans", withScript("\"scan\":[", "{}", "]")}, Shape{"Locks", withScript("\"lock\":[", "{}", "]")},
        Shape{"Unlocks", withScript("\"unlock\":[", "{}", "]")},
        Shape{"NodesFinished", withScript("\"updateFinish\":[", "{}", "]")},
        Shape{"Starts", withScript(R"("elements":{"/ROOT#1":{"start":[)", "{}", "]}}")},
        Shape{"Polls", withScript(R"("elements":{"/ROOT#1":{"polls":[)", "{}", "]}}")},
        Shape{"Finishes", withScript(R"("elements":{"/ROOT#1":{"finish":[)", "{}", "]}}")},
        Shape{"Results",
              withScript(R"("elements":{"/ROOT#1":{"finish":[{"results":[)", R"({"code":1,"text":""})", "]}]}}")},
        Shape{"Elements", withScript("\"elements\":{", "\"/ROOT##\":{}", "}")},
        Shape{"Errors", withScript(R"("scan":[{"errors":[)", R"({"code":1,"text":""})", "]}]")},
        Shape{"Values", withScript("\"values\":{", "\"/ROOT:ID[#]\":[]", "}")},
        Shape{"ErrorsOfAValue", withScript(R"("values":{"/ROOT:ID":[)", R"({"code":1,"text":""})", "]}")}),
    [](const auto& shape) { return shape.param.name; });
