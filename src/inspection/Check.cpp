#include "inspection/Check.h"

#include <algorithm>
#include <tuple>

#include "base/PlatformText.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateBase;

namespace ZoNUpdateInspection {
namespace {

std::string pointerTo(const Place& place)
{
    std::string pointer = "/files/" + std::to_string(place.file.entry);
    if (place.board >= 0) {
        pointer += "/boards/" + std::to_string(place.board);
    }
    return pointer + "/" + place.member;
}

}  // namespace

void Check::report(const char* rule, Severity severity, const Place& place, std::string message)
{
    ZoTFinding& finding = findings.emplace_back();
    finding.rule = rule;
    finding.severity = severity;
    finding.entry = static_cast<std::int32_t>(place.file.entry);
    finding.board = place.board;
    finding.name = allText(place.file.name);
    finding.pointer = pointerTo(place);
    finding.message = std::move(message);
}

Check::Findings Check::takeFindings()
{
    std::stable_sort(findings.begin(), findings.end(), [](const ZoTFinding& a, const ZoTFinding& b) {
        return std::tie(a.entry, a.board) < std::tie(b.entry, b.board);
    });
    return std::move(findings);
}

}  // namespace ZoNUpdateInspection
