// The findings with the places in the description's text that their pointers lead to.
#include "tool/documents/Findings.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace TrellanTool {

namespace {

using nlohmann::ordered_json;
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
    return {source.rule, source.severity, position(source.entry), position(source.board),
            source.name, source.pointer,  std::nullopt,           source.message};
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

std::vector<Finding> findingsOf(ZoITrellanInspector& inspector, const std::string& description)
{
    std::vector<Finding> findings;
    std::vector<std::string> pointers;
    for (unsigned i = 0; i < inspector.getFindingCount(); ++i) {
        findings.push_back(taken(inspector.getFinding(i)));
        pointers.push_back(findings.back().pointer);
        pointers.push_back(parentOf(findings.back().pointer));
    }
    const JsonPlaces places = findJsonPlaces(description, pointers);
    for (std::size_t i = 0; i < findings.size(); ++i) {
        if (!findings[i].pointer.empty()) {
            findings[i].place = places.places[2 * i] ? places.places[2 * i] : places.places[2 * i + 1];
        }
    }
    return findings;
}

std::size_t countFindings(const std::vector<Finding>& findings, ZoTSeverity severity)
{
    return static_cast<std::size_t>(std::count_if(
        findings.begin(), findings.end(), [severity](const Finding& finding) { return finding.severity == severity; }));
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
        text += "\"" + finding.name + "\": ";
    }
    return text + finding.message + " [" + finding.rule + "]";
}

ordered_json findingRecord(const Finding& finding)
{
    return {{"rule", finding.rule},
            {"severity", severityName(finding.severity)},
            {"file", valueOrNull(finding.file)},
            {"board", valueOrNull(finding.board)},
            {"pointer", finding.pointer.empty() ? ordered_json() : ordered_json(finding.pointer)},
            {"line", finding.place ? ordered_json(finding.place->line) : ordered_json()},
            {"column", finding.place ? ordered_json(finding.place->column) : ordered_json()},
            {"message", finding.message}};
}

}  // namespace TrellanTool
