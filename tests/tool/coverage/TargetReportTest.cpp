// What a target's report holds of the target that an inspector knows.
#include <gtest/gtest.h>

#include <stdexcept>

#include "support/EmptyInspector.h"
#include "tool/coverage/TargetReport.h"

using TrellanTool::reportOf;
using TrellanTool::TargetReport;
using ZoNTrellanInspector::ZoTElement;
using ZoNTrellanInspector::ZoTKeys;
using ZoNTrellanInspector::ZoTState;

namespace {

// Knows two elements with the same keys, in these states.
class InspectorOfTwo : public EmptyInspector {
public:
    InspectorOfTwo(ZoTState first, ZoTState second)
    {
        elements[0].state = first;
        elements[0].filePosition = 5;
        elements[1].state = second;
        elements[1].filePosition = -1;
    }

    unsigned getElementCount() override { return 2; }
    const ZoTElement& getElement(unsigned index) override { return elements[index]; }
    const ZoTKeys& getElementKeys(unsigned) override { return keys; }

private:
    ZoTElement elements[2] = {};
    const ZoTKeys keys = {"T", false, "", 0, 0, 0, false, 1, ""};
};

}  // namespace

TEST(TargetReports, CountTheStatesOfElementsWithTheSameKeysTogether)
{
    InspectorOfTwo inspector(ZoTState::UPDATE, ZoTState::NO_FILE);
    const TargetReport report = reportOf(inspector);
    EXPECT_FALSE(report.isSupported);
    ASSERT_EQ(report.kinds.size(), 1U);
    EXPECT_EQ(report.kinds[0].files, (std::map<std::uint32_t, std::uint32_t>{{5, 1}}));
    EXPECT_EQ(report.kinds[0].counts, (TrellanTool::StateCounts{1, 0, 0, 0, 0, 1}));
}

TEST(TargetReports, AreOfTargetsBeforeAnUpdateAlone)
{
    InspectorOfTwo inspector(ZoTState::UPDATE, ZoTState::UPDATED);
    EXPECT_THROW(reportOf(inspector), std::logic_error);
}
