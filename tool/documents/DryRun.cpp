// The phases and states of a dry run, as text for people and as the document that a plan is.
#include "tool/documents/DryRun.h"

#include <algorithm>
#include <ostream>
#include <set>

#include "json/Json.h"
#include "tool/arguments/Arguments.h"
#include "tool/documents/BlockingElements.h"
#include "tool/documents/ElementOutcome.h"
#include "tool/documents/Sha256.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

std::string orDashes(const std::string& version)
{
    return version.empty() ? "---" : version;
}

}  // namespace

DryRun::DryRun(const Arguments& arguments, ZoITrellanUpdater& updater, ZoITrellanInspector& inspector,
               const std::string& description)
    : arguments(arguments),
      updater(updater),
      inspector(inspector),
      description(description),
      records(updater, inspector, true),
      updates(inspector.getPhaseCount())
{
    for (unsigned i = 0; i < records.count(); ++i) {
        states.push_back(inspector.getElement(i).state);
        if (states.back() == State::UPDATE) {
            updates.at(records.listed(i).phase).push_back(i);
        }
    }
}

bool DryRun::wouldUpdate() const
{
    return std::find(states.begin(), states.end(), State::UPDATE) != states.end();
}

std::vector<unsigned> DryRun::inState(State state) const
{
    std::vector<unsigned> indices;
    for (unsigned i = 0; i < states.size(); ++i) {
        if (states[i] == state) {
            indices.push_back(i);
        }
    }
    return indices;
}

void DryRun::writePhases(std::ostream& out) const
{
    for (std::size_t phase = 0; phase < updates.size(); ++phase) {
        out << "Phase " << phase << " would update" << (updates[phase].empty() ? " nothing.\n" : ":\n");
        for (const unsigned i : updates[phase]) {
            const ZoNTrellanUpdater::ZoTUpdateElement& element = records.listed(i);
            out << "    " << element.displayName << ": " << orDashes(element.installedVersion) << " -> "
                << orDashes(element.availableVersion)
                << (inspector.getElement(i).isDowngrade ? " (downgrade)\n" : "\n");
        }
    }
}

void DryRun::writeState(std::ostream& out, const char* heading, State state) const
{
    const std::vector<unsigned> indices = inState(state);
    if (indices.empty()) {
        return;
    }
    out << heading << ":\n";
    for (const unsigned i : indices) {
        out << "    " << records.listed(i).displayName << '\n';
    }
}

void DryRun::writeText(std::ostream& out) const
{
    if (!inspector.isTargetSupported()) {
        out << "The target is not supported:\n";
        forEachBlockingElement(records, inspector, [&](const std::string& line) { out << line << '\n'; });
    }
    writePhases(out);
    writeState(out, "Up to date", State::UP_TO_DATE);
    writeState(out, "Excluded", State::EXCLUDED);
    writeState(out, "Custom elements, left out", State::CUSTOM);
    writeState(out, "Not updated, since the target is not supported", State::BLOCKED);
    writeState(out, "Without a file in the archive", State::NO_FILE);
    out << records.count() << (records.count() == 1 ? " element: " : " elements: ") << inState(State::UPDATE).size()
        << " to update, " << inState(State::UP_TO_DATE).size() << " up to date, " << inState(State::EXCLUDED).size()
        << " excluded, " << inState(State::CUSTOM).size() << " custom, " << inState(State::BLOCKED).size()
        << " blocked, " << inState(State::NO_FILE).size() << " without a file\n";
}

ordered_json DryRun::archive() const
{
    std::string name, version, productName, formatVersion, variant;
    updater.getArchiveInfo(name, version, productName, formatVersion, variant);
    Sha256 sha256;
    sha256.add(description);
    return {{"path", arguments.options.archivePath}, {"version", version}, {"sha256", sha256.digest()}};
}

ordered_json DryRun::options() const
{
    const ZoNTrellanUpdater::ZoTOptions& options = arguments.options;
    return {{"description", options.descriptionFileName},
            {"boardTypes", options.boardTypes},
            {"serialNumbers", options.serialNumbers},
            {"elementNames", options.elementNames},
            {"exclude", std::set<std::uint32_t>(arguments.excluded.begin(), arguments.excluded.end())},
            {"force", options.force},
            {"configuration", options.configuration},
            {"disableCustomElements", options.disableCustomElements},
            {"noCheck", arguments.noCheck}};
}

ordered_json DryRun::phases() const
{
    return updates;
}

void DryRun::writeDocument(std::ostream& out, const std::vector<Finding>& findings, const DocumentError* error) const
{
    Sha256 sha256;
    DocumentWriter writer(
        [&](std::string_view text) {
            out << text;
            sha256.add(text);
        },
        "update");
    writer.error(error);
    writer.member("supported", inspector.isTargetSupported());
    ordered_json counts = ordered_json::object();
    for (const State state : statesBefore) {
        counts[stateName(state)] = inState(state).size();
    }
    writer.member("counts", counts);
    writer.member("phases", phases());
    writer.member("archive", archive());
    writer.member("options", options());
    writer.list("findings", static_cast<unsigned>(findings.size()),
                [&](unsigned i) { return findingRecord(findings[i]); });
    writer.list("elements", records.count(), [&](unsigned i) { return records.at(i); });
    // The digest is that of the document as if it ended here.
    sha256.add("\n}\n");
    writer.member("digest", sha256.digest());
    writer.end();
}

}  // namespace TrellanTool
