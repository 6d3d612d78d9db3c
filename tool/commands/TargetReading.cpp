#include "tool/commands/TargetReading.h"

#include <stdlib.h>

#include <cerrno>
#include <iostream>
#include <system_error>
#include <unordered_set>

#include "tool/ExitStatus.h"
#include "tool/TextStream.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/TargetFilters.h"

namespace TrellanTool {

namespace {

std::string errorsOf(ZoITrellanInspector& inspector)
{
    std::string text;
    for (unsigned i = 0; i < inspector.getTargetErrorCount(); ++i) {
        text += (text.empty() ? "" : "; ") + inspector.getTargetError(i).text;
    }
    return text.empty() ? "its inventory cannot be read" : text;
}

// A parameter that many elements share, and that cannot be read, is an error of each of them.
void keepEachOnce(std::vector<std::string>& lines)
{
    std::unordered_set<std::string> known;
    std::erase_if(lines, [&](const std::string& line) { return !known.insert(line).second; });
}

void noteErrors(TargetReport& report, ZoITrellanInspector& inspector)
{
    report.isWhole = inspector.getTargetErrorCount() == 0;
    for (unsigned i = 0; i < inspector.getTargetErrorCount(); ++i) {
        report.notes.push_back("ERROR: " + inspector.getTargetError(i).text);
    }
}

void noteWarnings(TargetReport& report, const std::string& text)
{
    TextSource lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("WARNING: ")) {
            report.notes.push_back(line);
        }
    }
}

// The lines of what the tool has said, without its name and from the first semicolon on: what differs from target to
// target stands there.
std::vector<std::string> sayingsIn(const std::string& text)
{
    constexpr std::string_view own = "trellan-update: ";
    std::vector<std::string> sayings;
    TextSource lines(text);
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, line.starts_with(own) ? own.size() : 0);
        sayings.push_back(line.substr(0, line.find(';')));
    }
    return sayings;
}

// Whether the library takes the filters for what they mean on the target that was read.
bool areUnderstood(const Arguments& asked, LibrarySession& session)
{
    TargetFilters filters(asked.options);
    if (asked.noCheck || filters.areOff()) {
        return true;
    }
    filters.note(session.updater(), session.inspector());
    return filters.areExplained();
}

}  // namespace

Arguments forCommand(const Arguments& asked, const char* name)
{
    Arguments arguments = asked;
    arguments.command = &commandNamed(name);
    arguments.options.command = arguments.command->code;
    return arguments;
}

std::optional<TargetReport> TargetReading::read(const std::string& path, bool isFirst)
{
    std::cerr.rdbuf(nullptr);  // the platform tells there what is told of each target anyway
    std::error_code unknown;
    const auto file = std::filesystem::weakly_canonical(path, unknown);
    if (!isFirst && file == last) {
        return std::nullopt;  // a simulated target goes on in its script
    }
    last = file;
    if (::setenv("TRELLAN_TARGET", path.c_str(), 1) != 0) {
        throw std::system_error(errno, std::generic_category(), "TRELLAN_TARGET");
    }
    TextStream text;
    session.redirect(text);
    ZoITrellanInspector& inspector = session.inspector();
    TargetReport report;
    if (inspector.readTarget() == 1) {
        if (!isFirst) {
            return std::nullopt;  // the flash drive of an earlier target may hide this one
        }
        report.error = errorsOf(inspector);
        return report;
    }
    if (areUnderstood(asked, session)) {
        std::vector<std::string> complaints = exclude();
        report = reportOf(inspector);
        report.complaints = std::move(complaints);
    } else {
        report = readAsDisplayed(path);
    }
    noteErrors(report, inspector);
    noteWarnings(report, text.str());
    keepEachOnce(report.notes);
    return report;
}

std::vector<std::string> TargetReading::exclude()
{
    std::vector<std::string> complaints;
    for (const std::uint32_t index : asked.excluded) {
        if (index >= session.inspector().getElementCount()) {
            complaints.push_back("warning: there is no element " + std::to_string(index) + " to exclude");
        }
        session.updater().disableUpdateElement(index);
    }
    return complaints;
}

// The filters mean other elements than the library takes them for, or nothing.
TargetReport TargetReading::readAsDisplayed(const std::string& path) const
{
    Arguments arguments = forCommand(asked, "compare");
    arguments.targetFile = path;
    TextStream text;
    TextStream said;
    LibrarySession understanding(arguments, text);
    TargetReport report;
    if (understanding.apply(said) == SUCCESS) {
        report = reportOf(understanding.inspector());
    } else {
        report.error = understanding.refusal();
    }
    report.complaints = sayingsIn(said.str());
    return report;
}

}  // namespace TrellanTool
