// The findings with the places in the description's text that their pointers lead to.
#include "tool/documents/Findings.h"

#include <algorithm>
#include <tuple>

#include "json/Json.h"
#include "json/Shortened.h"
#include "tool/documents/ElementRecords.h"
#include "tool/documents/TextTable.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;
using ZoNTrellanInspector::ZoTFinding;
using ZoNTrellanInspector::ZoTSeverity;

const char* severityName(ZoTSeverity severity)
{
    switch (severity) {
        case ZoTSeverity::ERROR:
            return "error";
        case ZoTSeverity::WARNING:
            return "warning";
        default:
            return "note";
    }
}

std::optional<std::int32_t> position(std::int32_t number)
{
    return number < 0 ? std::nullopt : std::optional(number);
}

Finding taken(const ZoTFinding& source)
{
    Finding finding{source.rule,
                    source.severity,
                    position(source.entry),
                    position(source.board),
                    source.name,
                    source.isInDescription ? std::optional(source.pointer) : std::nullopt,
                    std::nullopt,
                    source.message,
                    std::nullopt,
                    nullptr};
    if (source.rule == "unreachable" || source.rule == "overlap") {
        finding.coveredBy = source.coveredBy;
    }
    if (source.hasExample) {
        finding.example = std::make_shared<ZoNTrellanInspector::ZoTKeys>(source.example);
    }
    return finding;
}

std::string parentOf(const std::string& pointer)
{
    return pointer.substr(0, pointer.rfind('/'));
}

template <typename Value>
ordered_json valueOrNull(const std::optional<Value>& value)
{
    return value ? ordered_json(*value) : ordered_json();
}

}  // namespace

std::vector<Finding> findingsOf(ZoITrellanInspector& inspector)
{
    std::vector<Finding> findings;
    const unsigned count = inspector.getFindingCount();
    findings.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        findings.push_back(taken(inspector.getFinding(i)));
    }
    return findings;
}

std::vector<Finding> findingsOf(ZoITrellanInspector& inspector, const std::string& description)
{
    std::vector<Finding> findings = findingsOf(inspector);
    findPlaces(findings, description);
    sortByPlace(findings);
    return findings;
}

JsonPlaces findPlaces(std::vector<Finding>& findings, const std::string& description)
{
    std::vector<std::string> pointers;
    for (const Finding& finding : findings) {
        pointers.push_back(finding.pointer.value_or(""));
        pointers.push_back(parentOf(pointers.back()));
    }
    JsonPlaces places = findJsonPlaces(description, pointers);
    for (std::size_t i = 0; i < findings.size(); ++i) {
        if (findings[i].pointer) {
            findings[i].place = places.places[2 * i] ? places.places[2 * i] : places.places[2 * i + 1];
        }
    }
    return places;
}

void sortByPlace(std::vector<Finding>& findings)
{
    const auto order = [](const Finding& found) {
        return found.place ? std::tuple(0, found.place->line, found.place->column) : std::tuple(1, 0ul, 0ul);
    };
    std::stable_sort(findings.begin(), findings.end(),
                     [&](const Finding& a, const Finding& b) { return order(a) < order(b); });
}

std::size_t countFindings(const std::vector<Finding>& findings, ZoTSeverity severity)
{
    return static_cast<std::size_t>(std::count_if(
        findings.begin(), findings.end(), [severity](const Finding& finding) { return finding.severity == severity; }));
}

std::string counted(std::size_t count, const std::string& what)
{
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string findingText(const Finding& finding, const std::string& descriptionName)
{
    std::string text = descriptionName + ":";
    if (finding.place) {
        text += std::to_string(finding.place->line) + ":" + std::to_string(finding.place->column) + ":";
    }
    text += std::string(" ") + severityName(finding.severity) + ": ";
    if (finding.file) {
        text += "files[" + std::to_string(*finding.file) + "] ";
        text += finding.board ? "boards[" + std::to_string(*finding.board) + "] " : "";
        text +=
            finding.name.empty() ? "" : "\"" + TrellanJson::shortened(finding.name, TrellanJson::longestName) + "\"";
        if (text.ends_with(' ')) {
            text.pop_back();
        }
        text += ": ";
    }
    return onOneLine(text + finding.message + " [" + finding.rule + "]");
}

ordered_json findingRecord(const Finding& finding)
{
    ordered_json record = {{"rule", finding.rule},
                           {"severity", severityName(finding.severity)},
                           {"file", valueOrNull(finding.file)},
                           {"board", valueOrNull(finding.board)},
                           {"pointer", valueOrNull(finding.pointer)},
                           {"line", finding.place ? ordered_json(finding.place->line) : ordered_json()},
                           {"column", finding.place ? ordered_json(finding.place->column) : ordered_json()},
                           {"message", finding.message}};
    if (finding.coveredBy) {
        record["coveredBy"] = *finding.coveredBy;
    }
    if (finding.example) {
        record["example"] = keysRecord(*finding.example);
    }
    return record;
}

}  // namespace TrellanTool
