// The page that shows a coverage: what stands in it, and that names cannot break out of their place.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

using nlohmann::ordered_json;

namespace {

constexpr const char* beginOfDocument = "<script type=\"application/json\" id=\"document\">";

std::size_t occurrences(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

// A page, and the document that was printed beside it.
struct Page {
    std::string text;
    std::string document;

    // What stands in the place of the document.
    std::string embedded() const
    {
        const std::size_t begin = text.find(beginOfDocument) + std::string(beginOfDocument).size();
        return text.substr(begin, text.find("</script>", begin) - begin);
    }
};

// Of an archive with a file of this name, and a target with a board of this type.
Page pageWith(const std::string& fileName, const std::string& boardType)
{
    const TestArchive archive(description({fileEntry(fileName)}));
    const TempDir folder;
    writeText(folder.path() / "a.json",
              target({board("HCN", {{"PRODUCT/BOARD_TYPE", boardType}}, {updateElement(1, {{"NAME", "E"}})})}).dump());
    const std::string file = (folder.path() / "page.html").string();
    const RunResult result =
        ran({"coverage", archive.path(), (folder.path() / "a.json").string(), "--html", file, "--json"});
    EXPECT_EQ(result.status, 0);
    return {readText(file), result.out};
}

}  // namespace

TEST(CoveragePage, HoldsTheDocumentThatIsPrinted)
{
    const Page page = pageWith("one.bin", "KR5120");
    EXPECT_EQ(ordered_json::parse(page.embedded()), ordered_json::parse(page.document));
    EXPECT_EQ(occurrences(page.text, "@"), occurrences(page.text, "@page") + occurrences(page.text, "@media"));
}

TEST(CoveragePage, HoldsTheDocumentWithoutLineEndsAndIndentation)
{
    const std::string embedded = pageWith("one.bin", "KR5120").embedded();
    EXPECT_EQ(occurrences(embedded, "\n"), 0u);
    EXPECT_EQ(occurrences(embedded, "  "), 0u) << embedded;
}

TEST(CoveragePage, LetsNoNameEndThePlaceOfTheDocument)
{
    const std::string name = "</script><script>alert(1)</script><!--<script>";
    const Page page = pageWith(name, name + "]]>");
    EXPECT_EQ(occurrences(page.text, "</script>"), 2u);
    EXPECT_EQ(occurrences(page.text, "<!--"), 0u);
    EXPECT_EQ(ordered_json::parse(page.embedded()), ordered_json::parse(page.document));
    EXPECT_EQ(ordered_json::parse(page.embedded())["files"][0]["name"], name);
}

TEST(CoveragePage, WritesLineSeparatorsAsEscapes)
{
    const std::string name =
        "a\xE2\x80\xA8"
        "b\xE2\x80\xA9"
        "c\n  d\"\\";
    const Page page = pageWith("one.bin", name);
    EXPECT_EQ(occurrences(page.text, "\xE2\x80\xA8"), 0u);
    EXPECT_EQ(occurrences(page.text, "\xE2\x80\xA9"), 0u);
    EXPECT_EQ(ordered_json::parse(page.embedded())["noFile"][0]["keys"]["boardType"], name);
}

TEST(CoveragePage, ReplacesBytesThatAreNoText)
{
    const TestArchive archive(description({}));
    const TempDir folder;
    const std::string file = (folder.path() / "page.html").string();
    EXPECT_EQ(ran({"coverage", archive.path(), (folder.path() / "a\xFF.json").string(), "--html", file}).status, 1);
    const Page page = {readText(file), ""};
    const std::string target = ordered_json::parse(page.embedded())["targets"][0]["target"];
    EXPECT_TRUE(target.ends_with("a\xEF\xBF\xBD.json")) << target;
}

TEST(CoveragePage, HasNoOutsideParts)
{
    const Page page = pageWith("one.bin", "KR5120");
    for (const char* const part : {"src=", "href=", "url(", "@import", "http:", "https:", "fetch(", "XMLHttp"}) {
        EXPECT_EQ(occurrences(page.text, part), 0u) << part;
    }
    EXPECT_EQ(occurrences(page.text, "default-src 'none'"), 1u);
}

TEST(CoveragePage, ThatCannotBeWrittenIsAFailure)
{
    const TestArchive archive(description({}));
    const RunResult result = ran({"coverage", archive.path(), "/dev/null", "--html", "/nowhere/page.html"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("/nowhere/page.html"), std::string::npos);
}
