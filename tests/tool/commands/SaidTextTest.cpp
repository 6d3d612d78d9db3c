// What is kept of the library's text.
#include <gtest/gtest.h>

#include "tool/commands/SaidText.h"

using TrellanTool::SaidText;

namespace {

const std::string warning = "WARNING: of about fifty bytes, as a library prints them.\n";

std::string errorsOf(const std::vector<std::string>& texts)
{
    SaidText said;
    said.begin(false);
    for (const std::string& text : texts) {
        said.add(text);
    }
    return said.errors();
}

std::string joined(const SaidText& said)
{
    std::string text;
    said.forEachPiece([&text](const std::string& piece) { text += piece; });
    return text;
}

}  // namespace

TEST(SaidText, HasNoErrorsWhereNoLineBeginsWithOne)
{
    EXPECT_EQ(errorsOf({}), "");
    EXPECT_EQ(errorsOf({"no ERROR: here\n", "nor\tERROR: here"}), "");
}

TEST(SaidText, HasErrorsFromTheFirstLineOnThatIsOne)
{
    EXPECT_EQ(errorsOf({"ERROR: a\n"}), "ERROR: a");
    EXPECT_EQ(errorsOf({"before\n", "ERROR: a\n\tmore\n", "ERROR: b\n\n"}), "ERROR: a\n\tmore\nERROR: b");
    EXPECT_EQ(errorsOf({"before", "\nERR", "OR: a"}), "ERROR: a");
}

TEST(SaidText, HasErrorsBehindAnyLengthOfText)
{
    for (const std::string middle : {"", "ERROR: no line of its own: "}) {
        SaidText said;
        said.begin(false);
        for (unsigned i = 0; i < 10000; ++i) {
            said.add(middle.empty() ? warning : "x" + middle);
        }
        EXPECT_EQ(said.errors(), "");
        said.add("\nERROR: a\n");
        for (unsigned i = 0; i < 10000; ++i) {
            said.add(warning);
        }
        const std::string errors = said.errors();
        EXPECT_TRUE(errors.starts_with("ERROR: a\nWARNING")) << errors.substr(0, 80);
        EXPECT_EQ(errors.size(), 8 + 10000 * warning.size());
    }
}

TEST(SaidText, IsKeptWholeWhereAllIsAskedFor)
{
    SaidText said;
    said.begin(true);
    std::string expected;
    for (unsigned i = 0; i < 10000; ++i) {
        said.add(warning);
        expected += warning;
    }
    const std::string large(200000, 'x');
    said.add(large);
    EXPECT_TRUE(joined(said) == expected + large);
    said.begin(true);
    EXPECT_EQ(joined(said), "");
    said.begin(false);
    said.add(warning);
    EXPECT_EQ(joined(said), "");
}
