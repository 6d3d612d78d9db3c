#include <optional>
#include <ostream>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/Actions.h"
#include "tool/documents/Document.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/update/History.h"

namespace TrellanTool {

namespace {

// Of a file that cannot be read, why.
std::optional<History> historyOf(const std::string& path, const Arguments& arguments, const Streams& streams)
{
    try {
        return readHistory(path);
    } catch (const HistoryError& error) {
        say(streams.err, error.what());
        if (arguments.json) {
            writeErrorDocument(streams.out, *arguments.command, {FAILURE, error.what()});
        }
        return std::nullopt;
    }
}

}  // namespace

int printHistory(const Arguments& arguments, const Streams& streams)
{
    const std::string& path = arguments.operands.front();
    const auto history = historyOf(path, arguments, streams);
    if (!history) {
        return FAILURE;
    }
    for (const std::string& complaint : history->complaints) {
        say(streams.err, path + ": " + complaint);
    }
    if (!arguments.json) {
        streams.out << historyText(*history);
        return SUCCESS;
    }
    DocumentWriter writer(streams.out, "history");
    writer.list("runs", static_cast<unsigned>(history->runs.size()),
                [&](unsigned i) { return historyRecord(history->runs[i]); });
    writer.end();
    return SUCCESS;
}

}  // namespace TrellanTool
