#include "tool/documents/HelpDocument.h"

#include "json/Json.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/ExitMeanings.h"
#include "tool/arguments/Help.h"
#include "tool/arguments/Option.h"
#include "tool/documents/DocumentWriter.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

ordered_json textOrNull(const std::string& text)
{
    return text.empty() ? ordered_json(nullptr) : ordered_json(text);
}

ordered_json commandRecords(const Command* about)
{
    ordered_json records = ordered_json::array();
    for (const Command& command : allCommands()) {
        if (about == nullptr && !command.has(HIDDEN)) {
            records.push_back(
                {{"name", command.name}, {"operands", command.operands}, {"description", command.description}});
        }
    }
    return records;
}

ordered_json optionRecords(const Command* about)
{
    ordered_json records = ordered_json::array();
    for (const Option* const option : helpOptions(about)) {
        records.push_back({{"name", option->name},
                           {"letter", textOrNull(option->letter == 0 ? "" : std::string(1, option->letter))},
                           {"value", textOrNull(option->placeholder == nullptr ? "" : option->placeholder)},
                           {"description", option->description}});
    }
    return records;
}

ordered_json exitRecords(const Command* about)
{
    ordered_json records = ordered_json::array();
    for (const ExitMeaning& exit : exitMeanings(about)) {
        for (const int status : exit.statuses) {
            records.push_back({{"status", status}, {"meaning", exit.meaning}});
        }
    }
    return records;
}

}  // namespace

void writeHelpDocument(std::ostream& out, const Command* command)
{
    DocumentWriter writer(out, "help");
    writer.member("about", textOrNull(command == nullptr ? "" : command->name));
    writer.member("usage", helpUsage(command));
    writer.member("description", helpDescription(command));
    writer.member("commands", commandRecords(command));
    writer.member("options", optionRecords(command));
    writer.member("example", textOrNull(command == nullptr ? "" : command->example));
    writer.member("exitStatuses", exitRecords(command));
    writer.end();
}

void writeToolVersionDocument(std::ostream& out, const char* text)
{
    DocumentWriter writer(out, "--version");
    writer.member("version", text);
    writer.end();
}

}  // namespace TrellanTool
