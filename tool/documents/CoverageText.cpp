// The tables and lists that tell people what an archive does for many targets.
#include <algorithm>
#include <ostream>

#include "json/Json.h"
#include "tool/documents/CoverageDocument.h"
#include "tool/documents/Findings.h"
#include "tool/documents/TextTable.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

void writeTargets(std::ostream& out, const Coverage& coverage)
{
    std::vector<TableRow> rows = {
        {"Target", "Supported", "Update", "Up to date", "Excluded", "Custom", "Blocked", "Without a file"}};
    for (const Coverage::Target& target : coverage.targets()) {
        if (target.error) {
            rows.push_back({target.name, "cannot be read"});
            continue;
        }
        const auto count = [&](ZoNTrellanInspector::ZoTState state) {
            const auto* const found = std::find(statesBefore.begin(), statesBefore.end(), state);
            return std::to_string(target.counts[static_cast<std::size_t>(found - statesBefore.begin())]);
        };
        using State = ZoNTrellanInspector::ZoTState;
        rows.push_back({target.name, target.isSupported ? "yes" : "no", count(State::UPDATE), count(State::UP_TO_DATE),
                        count(State::EXCLUDED), count(State::CUSTOM), count(State::BLOCKED), count(State::NO_FILE)});
    }
    out << tableText(rows, true);
}

void writeFiles(std::ostream& out, const Coverage& coverage)
{
    std::vector<TableRow> rows = {{"Entry", "File", "Elements"}};
    for (const Coverage::File& file : coverage.files()) {
        rows.push_back({"files[" + std::to_string(file.entry) + "]", file.name,
                        file.elements == 0 ? "none" : std::to_string(file.elements)});
    }
    out << tableText(rows, true);
}

std::string valueText(const ordered_json& value)
{
    return value.is_string() ? value.get<std::string>() : compactText(value);
}

// Without what most kinds do not differ in: what is left out in an entry.
std::string keysText(const std::string& keys)
{
    const ordered_json values = ordered_json::parse(keys);
    std::string text = valueText(values["boardType"]);
    for (const auto& [key, value] : values.items()) {
        if (key != "boardType" && !value.is_null()) {
            text += ", " + key + " " + valueText(value);
        }
    }
    return text;
}

void writeWithoutFile(std::ostream& out, const Coverage& coverage)
{
    bool isFirst = true;
    for (const std::uint32_t number : coverage.orderedKinds()) {
        const Coverage::Kind& kind = coverage.kinds()[number];
        if (kind.withoutFile != 0) {
            out << (isFirst ? "\nWithout a file in the archive:\n" : "") << "    " << onOneLine(keysText(kind.keys))
                << ": " << counted(kind.withoutFile, "element") << " of " << counted(kind.targetsWithoutFile, "target")
                << '\n';
            isFirst = false;
        }
    }
}

}  // namespace

void writeCoverageText(std::ostream& out, const Coverage& coverage)
{
    writeTargets(out, coverage);
    out << '\n';
    writeFiles(out, coverage);
    writeWithoutFile(out, coverage);
    const auto unused = std::count_if(coverage.files().begin(), coverage.files().end(),
                                      [](const Coverage::File& file) { return file.elements == 0; });
    const std::size_t read = coverage.readTargets();
    out << '\n'
        << counted(coverage.targets().size(), "target") << ": " << coverage.supportedTargets() << " supported, "
        << read - coverage.supportedTargets() << " not supported, " << coverage.targets().size() - read
        << " that cannot be read; entries that nothing uses: " << unused << " of " << coverage.files().size() << '\n';
}

}  // namespace TrellanTool
