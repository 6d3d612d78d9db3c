#include "tool/coverage/TargetReport.h"

#include <unordered_map>

#include "json/Json.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

namespace {

using TrellanJson::json;
using ZoNTrellanInspector::ZoTElement;

std::size_t positionOf(ZoNTrellanInspector::ZoTState state)
{
    for (std::size_t i = 0; i < statesBefore.size(); ++i) {
        if (statesBefore[i] == state) {
            return i;
        }
    }
    throw std::logic_error("an element has been updated");
}

}  // namespace

TargetReport reportOf(ZoITrellanInspector& inspector)
{
    TargetReport report;
    report.isSupported = inspector.isTargetSupported();
    std::unordered_map<std::string, std::size_t> positions;
    for (unsigned i = 0; i < inspector.getElementCount(); ++i) {
        std::string keys = compactText(keysRecord(inspector.getElementKeys(i)));
        const auto [position, isNew] = positions.try_emplace(std::move(keys), report.kinds.size());
        if (isNew) {
            report.kinds.push_back({position->first, {}, {}});
        }
        KindReport& kind = report.kinds[position->second];
        const ZoTElement& element = inspector.getElement(i);
        ++kind.counts[positionOf(element.state)];
        if (element.filePosition >= 0) {
            ++kind.files[static_cast<std::uint32_t>(element.filePosition)];
        }
    }
    return report;
}

std::string packed(const TargetReport& report)
{
    json kinds = json::array();
    for (const KindReport& kind : report.kinds) {
        kinds.push_back({kind.keys, kind.counts, kind.files});
    }
    const json values = {report.error ? json(*report.error) : json(),
                         report.isSupported,
                         report.isWhole,
                         std::move(kinds),
                         report.notes,
                         report.complaints};
    std::string bytes;
    json::to_cbor(values, bytes);
    return bytes;
}

TargetReport unpacked(const std::string& bytes)
{
    const json values = json::from_cbor(bytes);
    TargetReport report;
    if (!values.at(0).is_null()) {
        report.error = values.at(0).get<std::string>();
    }
    report.isSupported = values.at(1);
    report.isWhole = values.at(2);
    for (const json& kind : values.at(3)) {
        report.kinds.push_back({kind.at(0), kind.at(1), kind.at(2)});
    }
    report.notes = values.at(4);
    report.complaints = values.at(5);
    return report;
}

}  // namespace TrellanTool
