// What the archive can be asked to show: its version, its table, its description as JSON, and what it says of itself.
#include "archive/ZoCUpdateArchive.h"
#include "base/CellText.h"
#include "base/PlatformText.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateArchive;

namespace {

using ZoNJson::json;

std::string numberText(const json& number)
{
    return cellText(static_cast<unsigned>(number));
}

std::string join(const std::vector<std::string>& texts)
{
    std::string joined;
    const char* separator = "";
    for (const std::string& text : texts) {
        joined += separator + text;
        separator = ",";
    }
    return joined;
}

// The board types of an entry or a board object.
std::string boardLabel(const json& object)
{
    const json& boardType = object["boardType"];
    if (!boardType.is_array()) {
        return std::string(boardType);
    }
    std::vector<std::string> types;
    for (const json& type : boardType) {
        types.emplace_back(type);
    }
    return join(types);
}

std::string boardCell(const json& entry)
{
    if (!entry.contains("boards")) {
        return boardLabel(entry);
    }
    std::vector<std::string> labels;
    for (const json& board : entry["boards"]) {
        labels.push_back(boardLabel(board));
    }
    return join(labels);
}

void appendTarget(std::string& cell, const char* separator, const std::string& label, const std::string& target)
{
    cell += (cell.empty() ? "" : separator) + label + target;
}

std::string targetCell(const json& entry)
{
    std::string cell;
    if (entry.contains("boards")) {
        for (const json& board : entry["boards"]) {
            const std::string label = boardLabel(board) + ": ";
            if (board.contains("id")) {
                appendTarget(cell, ", ", label, numberText(board["id"]));
            }
            if (board.contains("targetPath")) {
                appendTarget(cell, ", ", label, std::string(board["targetPath"]));
            }
        }
    }
    if (entry.contains("id")) {
        appendTarget(cell, ", others: ", "", numberText(entry["id"]));
    }
    if (entry.contains("targetPath")) {
        appendTarget(cell, ", others: ", "", std::string(entry["targetPath"]));
    }
    return cell;
}

std::vector<std::string> tableRow(const ZoSUpdateFile& file)
{
    std::vector<std::string> row{
        boardCell(file.jsonEntry),  textBeforeNul(file.name),
        cellText(file.version),     file.checksumCrc32 != notAvailable ? cellText(file.checksumCrc32) : "---",
        targetCell(file.jsonEntry),
    };
    if (file.fileMissing) {
        row.emplace_back("[FILE MISSING]");
    }
    return row;
}

// Puts a "0" in place of the character after the second dot.
std::string withZeroThirdNumber(std::string version)
{
    const std::size_t firstDot = version.find('.');
    const std::size_t secondDot = firstDot == std::string::npos ? firstDot : version.find('.', firstDot + 1);
    if (secondDot != std::string::npos && secondDot + 1 < version.size()) {
        version[secondDot + 1] = '0';
    }
    return version;
}

}  // namespace

void ZoCUpdateArchive::outputArchiveVersion() const
{
    const ZoCVersion version = archiveVersion;
    if (version.getMai() != 0) {
        owner->print("%s\n", version.getAsString().c_str());
        return;
    }
    // The text form leaves a zero third number out. So it is taken with a 9 in its place, which is then overwritten.
    const ZoCVersion complete(version.getMar(), version.getMir(), 9, version.getSpb(), version.getSpn(),
                              version.getPlv());
    owner->print("%s\n", withZeroThirdNumber(allText(complete.getAsString())).c_str());
}

void ZoCUpdateArchive::printArchive() const
{
    TableText table;
    table.addRow({"BoardType", "File", "Version", "Checksum", "Id/TargetPath"});
    for (const ZoSUpdateFile& file : files) {
        table.addRow(tableRow(file));
    }
    owner->printTable(table);
}

void ZoCUpdateArchive::outputDescriptionFile() const
{
    outputDescriptionFileJson();
}

void ZoCUpdateArchive::outputDescriptionFileJson() const
{
    json info = json::object();
    info["formatVersion"] = "1.0";
    info["archiveVersion"] = allText(archiveVersion.getAsString());
    info["productName"] = allText(productName);
    if (!archiveVariant.isEmpty()) {
        info["archiveVariant"] = allText(archiveVariant);
    }
    info["archiveName"] = allText(archiveName);

    json entries = json::array();
    for (std::size_t i = 0; i < files.size(); ++i) {
        json entry = files[i].jsonEntry;
        if (files[i].checksumCrc32 != notAvailable) {
            entry["checksumCrc32"] = files[i].checksumCrc32;
        }
        entries[i] = std::move(entry);
    }

    json document = json::object();
    document["info"] = std::move(info);
    document["files"] = std::move(entries);
    std::string text = document.dump(4, ' ', false, ZoNJson::ignore);
    text += '\n';
    owner->printText(text);  // not formatted, which would take a copy
}

void ZoCUpdateArchive::getInfo(std::string& name, std::string& version, std::string& product, std::string& format,
                               std::string& variant) const
{
    name = allText(archiveName);
    version = allText(archiveVersion);
    product = allText(productName);
    format = allText(formatVersion);
    variant = allText(archiveVariant);
}
