// What it costs in memory to read a document, in a process of its own.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <functional>

#include "AnotherProcess.h"
#include "JsonText.h"
#include "simulation/target/TargetFile.h"
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

    // What `read` costs, for each byte of the document, in tenths; 255 and more: 255.
    template <class Read>
    static int tenthsForEachByte(Read read)
    {
        return inAnotherProcess([&] {
            const std::size_t before = peak();
            read();
            return static_cast<int>(std::min<std::size_t>((peak() - before) * 10 / size, 255));
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
                      Shape{"Blanks", [] { return repeated(" ", size) + "1"; }}, Shape{"NoJson", arrayOf("[],]")}),
    [](const auto& shape) { return shape.param.name; });
