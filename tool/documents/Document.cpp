// For each command the members of its document, written as they are found.
#include "tool/documents/Document.h"

#include <memory>

#include "json/Json.h"
#include "tool/arguments/Command.h"
#include "tool/documents/ElementRecords.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;
using ZoNTrellanUpdater::ZoTUpdateFile;

ordered_json archive(ZoITrellanUpdater& updater)
{
    std::string name, version, productName, formatVersion, variant;
    updater.getArchiveInfo(name, version, productName, formatVersion, variant);
    return {{"name", name},
            {"version", version},
            {"productName", productName},
            {"formatVersion", formatVersion},
            {"variant", variant}};
}

void writeFiles(DocumentWriter& writer, ZoITrellanUpdater& updater)
{
    ZoTUpdateFile* list = nullptr;
    unsigned count = 0;
    updater.getUpdateFileList(list, count);
    const std::unique_ptr<ZoTUpdateFile[]> owner(list);
    writer.list("files", count, [list](unsigned i) {
        return ordered_json{{"name", list[i].name}, {"version", list[i].version}};
    });
}

std::string firstLine(const std::string& text)
{
    return text.substr(0, text.find('\n'));
}

}  // namespace

void writeDocument(std::ostream& out, const Command& command, ZoITrellanUpdater& updater,
                   ZoITrellanInspector& inspector, const std::string& printed)
{
    DocumentWriter writer(out, command.name);
    if (command.has(ELEMENTS)) {
        const ElementRecords records(updater, inspector, command.has(FILES));
        writer.list("elements", records.count(), [&](unsigned i) { return records.at(i); });
    } else if (command.code == ZoNTrellanUpdater::PRINT_ARCHIVE) {
        writer.member("archive", archive(updater));
        writeFiles(writer, updater);
    } else {
        writer.member("version", firstLine(printed));
    }
    writer.end();
}

void writeRebootDocument(std::ostream& out, const Command& command, bool supported, unsigned state)
{
    DocumentWriter writer(out, command.name);
    writer.member("supported", supported);
    writer.member("state", state);
    writer.end();
}

void writeErrorDocument(std::ostream& out, const Command& command, const DocumentError& error)
{
    DocumentWriter writer(out, command.name);
    writer.error(&error);
    writer.end();
}

}  // namespace TrellanTool
