// Documents that are written piece by piece.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "tool/documents/DocumentWriter.h"

using nlohmann::ordered_json;
using TrellanTool::compactText;
using TrellanTool::DocumentError;
using TrellanTool::documentText;
using TrellanTool::DocumentWriter;

TEST(DocumentWriter, WritesWhatTheWholeDocumentWouldBe)
{
    const ordered_json values = {{{"a", {1, 2}}, {"text", "line\nend \xff"}}, ordered_json::array(), "c"};
    std::ostringstream out;
    DocumentWriter writer(out, "scan");
    const DocumentError error = {3, "why"};
    writer.error(nullptr);
    writer.error(&error);
    writer.member("archive", {{"path", "/a"}});
    writer.list("none", 0, [](unsigned) { return ordered_json(); });
    writer.list("some", 3, [&](unsigned i) { return values[i]; });
    writer.end();
    EXPECT_EQ(out.str(), documentText({{"schemaVersion", 1},
                                       {"command", "scan"},
                                       {"error", {{"status", 3}, {"message", "why"}}},
                                       {"archive", {{"path", "/a"}}},
                                       {"none", ordered_json::array()},
                                       {"some", values}}));
    EXPECT_TRUE(out.str().ends_with("\n  ]\n}\n"));
}

TEST(DocumentWriter, WritesLettersOfAllLanguagesAsTheyAreAndReplacesWhatIsNoText)
{
    EXPECT_EQ(compactText({{"name", "Ger\xC3\xA4t \xFF"}, {"id", 1}}),
              "{\"name\":\"Ger\xC3\xA4t \xEF\xBF\xBD\",\"id\":1}");
}
