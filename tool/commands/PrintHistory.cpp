#include <ostream>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/update/History.h"

namespace TrellanTool {

int printHistory(const Arguments& arguments, const Streams& streams)
{
    const std::string& path = arguments.operands.front();
    const History history = readHistory(path);
    for (const std::string& complaint : history.complaints) {
        say(streams.err, path + ": " + complaint);
    }
    if (!arguments.json) {
        streams.out << historyText(history);
        return SUCCESS;
    }
    DocumentWriter writer(streams.out, "history");
    writer.list("runs", static_cast<unsigned>(history.runs.size()),
                [&](unsigned i) { return historyRecord(history.runs[i]); });
    writer.end();
    return SUCCESS;
}

}  // namespace TrellanTool
