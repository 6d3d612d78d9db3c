#include "tool/coverage/Coverage.h"

#include <algorithm>
#include <numeric>

#include "json/Json.h"

namespace TrellanTool {

Coverage::Coverage(const std::vector<std::string>& targetNames, ZoITrellanInspector& archive, bool withCells)
    : withCells(withCells)
{
    for (const std::string& name : targetNames) {
        allTargets.push_back({name, std::nullopt, false, true, {}, {}});
    }
    for (unsigned i = 0; i < archive.getFileCount(); ++i) {
        const ZoNTrellanInspector::ZoTFile& file = archive.getFile(i);
        allFiles.push_back({file.entry, file.name, file.version, 0});
    }
}

void Coverage::take(std::size_t position, const TargetReport& report)
{
    if (report.error) {
        takeUnread(position, *report.error);
        return;
    }
    Target& target = allTargets.at(position);
    target.isSupported = report.isSupported;
    target.isWhole = report.isWhole;
    for (const KindReport& reported : report.kinds) {
        const std::uint32_t number = numberOf(reported.keys);
        Kind& kind = allKinds[number];
        for (std::uint32_t state = 0; state < reported.counts.size(); ++state) {
            if (const std::uint32_t elements = reported.counts[state]; elements != 0) {
                if (withCells) {
                    target.cells.push_back({number, state, elements & 0x1FFFFFFFU});
                }
                target.counts[state] += elements;
                kind.elements += elements;
            }
        }
        if (const std::uint32_t withoutFile = reported.counts.front(); withoutFile != 0) {
            kind.withoutFile += withoutFile;
            ++kind.targetsWithoutFile;
        }
        for (const auto& [file, elements] : reported.files) {
            allFiles.at(file).elements += elements;
            kind.files.insert(file);
        }
    }
    target.cells.shrink_to_fit();
}

void Coverage::takeUnread(std::size_t position, const std::string& error)
{
    allTargets.at(position).error = error;
}

std::uint32_t Coverage::numberOf(const std::string& keys)
{
    const auto [number, isNew] = numbers.try_emplace(keys, static_cast<std::uint32_t>(allKinds.size()));
    if (isNew) {
        allKinds.push_back({keys, 0, 0, 0, {}});
    }
    return number->second;
}

std::vector<std::uint32_t> Coverage::orderedKinds() const
{
    std::vector<TrellanJson::ordered_json> keys;
    for (const Kind& kind : allKinds) {
        keys.push_back(TrellanJson::ordered_json::parse(kind.keys));
    }
    std::vector<std::uint32_t> order(allKinds.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
    return order;
}

std::size_t Coverage::readTargets() const
{
    return static_cast<std::size_t>(std::count_if(allTargets.begin(), allTargets.end(),
                                                  [](const Target& target) { return !target.error.has_value(); }));
}

std::size_t Coverage::supportedTargets() const
{
    return static_cast<std::size_t>(
        std::count_if(allTargets.begin(), allTargets.end(), [](const Target& target) { return target.isSupported; }));
}

bool Coverage::isWhole() const
{
    return std::all_of(allTargets.begin(), allTargets.end(),
                       [](const Target& target) { return !target.error && target.isWhole; });
}

}  // namespace TrellanTool
