// The findings with the places in the description's text that their pointers lead to.
#include "tool/documents/Findings.h"

#include <algorithm>

#include "json/Json.h"
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

// The pointers of what an inspector has found. Those to nothing in the description are at the end.
class FoundPointers final : public AskedPointers {
public:
    FoundPointers(ZoITrellanInspector& inspector, FindingOrder& order)
        : inspector(inspector), order(order), count(inspector.getFindingCount())
    {
        while (count > 0 && !inspector.getFinding(count - 1).isInDescription) {
            --count;
        }
    }

    std::size_t size() const override { return count; }

    Asked at(std::size_t position) override
    {
        if (present == nullptr || position != presentPosition) {
            present = &inspector.getFinding(static_cast<unsigned>(position));
            presentPosition = position;
        }
        return {present->entry, present->board, present->pointer};
    }

    void takePlace(std::size_t position, std::optional<std::size_t> offset) override { order.add(position, offset); }

private:
    ZoITrellanInspector& inspector;
    FindingOrder& order;
    unsigned count;
    const ZoTFinding* present = nullptr;
    std::size_t presentPosition = 0;
};

template <typename Value>
ordered_json valueOrNull(const std::optional<Value>& value)
{
    return value ? ordered_json(*value) : ordered_json();
}

}  // namespace

Finding findingAt(ZoITrellanInspector& inspector, std::size_t position)
{
    return taken(inspector.getFinding(static_cast<unsigned>(position)));
}

JsonPlaces findPlaces(ZoITrellanInspector& inspector, std::string_view description, FindingOrder& order)
{
    FoundPointers pointers(inspector, order);
    return findJsonPlaces(description, pointers);
}

std::vector<Finding> findingsOf(ZoITrellanInspector& inspector, const std::string& description)
{
    FindingOrder order;
    findPlaces(inspector, description, order);
    for (std::size_t i = order.size(); i < inspector.getFindingCount(); ++i) {
        order.add(i, std::nullopt);
    }
    TextPlaces places(description);
    std::vector<Finding> findings;
    findings.reserve(order.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        const auto [number, offset] = order.at(i);
        findings.push_back(findingAt(inspector, number));
        if (offset) {
            findings.back().place = places.at(*offset);
        }
    }
    return findings;
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
        text += finding.name.empty() ? "" : "\"" + finding.name + "\"";
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
