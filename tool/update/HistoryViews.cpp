// What is shown of a history.
#include <algorithm>

#include "tool/update/History.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

// Texts of a file stay on the line of their run.
std::string withoutLineEnds(std::string text)
{
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::replace(text.begin(), text.end(), '\r', ' ');
    return text;
}

std::string orDash(const std::string& version)
{
    return version.empty() ? "-" : version;
}

std::string archiveText(const std::optional<HistoryArchive>& archive)
{
    if (!archive) {
        return "an unknown archive";
    }
    return archive->path + (archive->version.empty() ? "" : " (" + archive->version + ")");
}

std::string changeText(const HistoryElement& element)
{
    if (element.from.empty() && element.to.empty()) {
        return element.name;
    }
    return element.name + " " + orDash(element.from) + " -> " + orDash(element.to);
}

// Without a result nobody knows what was updated: what was to be is shown then.
std::string changesText(const HistoryRun& run)
{
    std::string text;
    for (const HistoryElement& element : run.elements) {
        if (!run.hasResult || element.state == "updated") {
            text += (text.empty() ? "" : ", ") + changeText(element);
        }
    }
    if (text.empty()) {
        return "nothing updated";
    }
    return (run.hasResult ? "updated " : "was to update ") + text;
}

std::string resultText(const HistoryRun& run)
{
    if (run.hasResult) {
        return run.result;
    }
    return run.result + (run.phase ? " in phase " + std::to_string(*run.phase) : " before the first phase");
}

ordered_json archiveJson(const std::optional<HistoryArchive>& archive)
{
    if (!archive) {
        return nullptr;
    }
    return {{"path", archive->path}, {"version", archive->version}};
}

ordered_json elementJson(const HistoryElement& element)
{
    return {{"index", element.index},
            {"name", element.name},
            {"from", element.from},
            {"to", element.to},
            {"state", element.state.empty() ? ordered_json() : ordered_json(element.state)},
            {"errors", element.errors}};
}

}  // namespace

std::string historyText(const History& history)
{
    std::string text;
    for (const HistoryRun& run : history.runs) {
        text += withoutLineEnds(run.time + "  " + archiveText(run.archive) + ": " + changesText(run) + ": " +
                                resultText(run));
        text += '\n';
    }
    return text;
}

ordered_json historyRecord(const HistoryRun& run)
{
    ordered_json elements = ordered_json::array();
    for (const HistoryElement& element : run.elements) {
        elements.push_back(elementJson(element));
    }
    return {{"run", run.run},
            {"time", run.time},
            {"archive", archiveJson(run.archive)},
            {"result", run.result},
            {"phase", run.phase ? ordered_json(*run.phase) : ordered_json()},
            {"elements", elements}};
}

}  // namespace TrellanTool
