// What is found in a description by the tool itself, whatever the library has found.
#include <gtest/gtest.h>

#include "support/EmptyInspector.h"
#include "tool/documents/ArchiveFindings.h"

using TrellanTool::ArchiveFindings;
using TrellanTool::Finding;
using ZoNTrellanInspector::ZoTDescription;
using ZoNTrellanInspector::ZoTDescriptionObject;
using ZoNTrellanInspector::ZoTSeverity;

namespace {

// Finds nothing, and knows what a description has.
class InspectorOfMembers : public EmptyInspector {
public:
    unsigned getMemberCount(ZoTDescriptionObject object) override
    {
        return object == ZoTDescriptionObject::WHOLE ? 2 : 0;
    }
    const std::string& getMember(ZoTDescriptionObject, unsigned position) override { return members[position]; }

private:
    const std::string members[2] = {"info", "files"};
};

}  // namespace

// A platform's JSON may take more than there is in JSON.
TEST(ArchiveFindings, TellWhatIsNoJsonAlsoWhereTheLibraryHasTakenIt)
{
    InspectorOfMembers inspector;
    const std::string description = "{\"info\": {},\n \"files\": [],}";
    ArchiveFindings findings(inspector, ZoTDescription::READ, description);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings.count(ZoTSeverity::ERROR), 1U);
    const Finding finding = findings.at(0);
    EXPECT_EQ(finding.rule, "syntax");
    EXPECT_EQ(finding.severity, ZoTSeverity::ERROR);
    EXPECT_EQ(finding.message,
              "this is no JSON. (syntax error while parsing object key - unexpected '}'; expected string literal)");
    ASSERT_TRUE(finding.place);
    EXPECT_EQ(finding.place->line, 2U);
    EXPECT_EQ(finding.place->column, 14U);
    EXPECT_FALSE(finding.pointer);
}
