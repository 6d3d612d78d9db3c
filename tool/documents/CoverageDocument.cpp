// The members of the document that tells what an archive does for many targets.
#include "tool/documents/CoverageDocument.h"

#include "json/Json.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

ordered_json countsRecord(const StateCounts& counts)
{
    ordered_json record = ordered_json::object();
    for (std::size_t i = 0; i < counts.size(); ++i) {
        record[stateName(statesBefore[i])] = counts[i];
    }
    return record;
}

// The kinds that the target has, by their positions in the document, each with the states that there are.
ordered_json kindsOfTarget(const Coverage::Target& target, const std::vector<std::uint32_t>& positions)
{
    ordered_json kinds = ordered_json::array();
    std::uint32_t last = 0;
    for (const Coverage::Cell& cell : target.cells) {
        if (kinds.empty() || last != cell.kind) {
            kinds.push_back({{"kind", positions[cell.kind]}, {"counts", ordered_json::object()}});
            last = cell.kind;
        }
        kinds.back()["counts"][stateName(statesBefore[cell.state])] = static_cast<std::uint32_t>(cell.elements);
    }
    return kinds;
}

ordered_json targetRecord(const Coverage::Target& target, const std::vector<std::uint32_t>& positions)
{
    if (target.error) {
        return {{"target", target.name},
                {"supported", nullptr},
                {"counts", nullptr},
                {"error", *target.error},
                {"kinds", nullptr}};
    }
    return {{"target", target.name},
            {"supported", target.isSupported},
            {"counts", countsRecord(target.counts)},
            {"error", nullptr},
            {"kinds", kindsOfTarget(target, positions)}};
}

ordered_json unusedEntries(const Coverage& coverage)
{
    ordered_json entries = ordered_json::array();
    for (const Coverage::File& file : coverage.files()) {
        if (file.elements == 0) {
            entries.push_back(file.entry);
        }
    }
    return entries;
}

ordered_json kindRecord(const Coverage::Kind& kind, const Coverage& coverage)
{
    ordered_json files = ordered_json::array();
    for (const std::uint32_t position : kind.files) {
        files.push_back(coverage.files()[position].entry);
    }
    return {{"keys", ordered_json::parse(kind.keys)}, {"elements", kind.elements}, {"files", std::move(files)}};
}

}  // namespace

void writeCoverage(DocumentWriter& writer, const Coverage& coverage)
{
    const std::vector<std::uint32_t> order = coverage.orderedKinds();
    std::vector<std::uint32_t> positions(order.size());
    std::vector<const Coverage::Kind*> withoutFile;
    for (std::uint32_t i = 0; i < order.size(); ++i) {
        positions[order[i]] = i;
        if (const Coverage::Kind& kind = coverage.kinds()[order[i]]; kind.withoutFile != 0) {
            withoutFile.push_back(&kind);
        }
    }
    const auto sizeOf = [](const auto& list) { return static_cast<unsigned>(list.size()); };
    writer.list("targets", sizeOf(coverage.targets()),
                [&](unsigned i) { return targetRecord(coverage.targets()[i], positions); });
    writer.list("files", sizeOf(coverage.files()), [&](unsigned i) -> ordered_json {
        const Coverage::File& file = coverage.files()[i];
        return {{"file", file.entry}, {"name", file.name}, {"elements", file.elements}, {"version", file.version}};
    });
    writer.member("unused", unusedEntries(coverage));
    writer.list("noFile", sizeOf(withoutFile), [&](unsigned i) -> ordered_json {
        const Coverage::Kind& kind = *withoutFile[i];
        return {{"keys", ordered_json::parse(kind.keys)},
                {"elements", kind.withoutFile},
                {"targets", kind.targetsWithoutFile}};
    });
    writer.list("kinds", sizeOf(order), [&](unsigned i) { return kindRecord(coverage.kinds()[order[i]], coverage); });
    writer.end();
}

}  // namespace TrellanTool
