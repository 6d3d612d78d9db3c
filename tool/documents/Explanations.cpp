// Words for what the library finds by holding elements and entries against one another.
#include "tool/documents/Explanations.h"

#include <ostream>

#include "json/Json.h"
#include "tool/documents/ElementOutcome.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;
using namespace ZoNTrellanInspector;

// A value that the library gives as JSON.
ordered_json valueOf(const std::string& json)
{
    return ordered_json::parse(json, nullptr, false);
}

ordered_json entryOrNull(ZoITrellanInspector& inspector, std::int32_t filePosition)
{
    return filePosition < 0 ? ordered_json()
                            : ordered_json(inspector.getFile(static_cast<unsigned>(filePosition)).entry);
}

ordered_json unmetOf(ZoITrellanInspector& inspector, unsigned candidate)
{
    ordered_json list = ordered_json::array();
    for (unsigned i = 0; i < inspector.getUnmetCount(candidate); ++i) {
        const ZoTUnmet& unmet = inspector.getUnmet(candidate, i);
        list.push_back(
            {{"criterion", unmet.criterion}, {"expected", valueOf(unmet.expected)}, {"actual", valueOf(unmet.actual)}});
    }
    return list;
}

// files[2] "io.bin", of a board object files[2] boards[1] "io.bin"
std::string nameOf(ZoITrellanInspector& inspector, std::int32_t filePosition, std::int32_t board = -1)
{
    const ZoTFile& file = inspector.getFile(static_cast<unsigned>(filePosition));
    return "files[" + std::to_string(file.entry) + "] " + (board < 0 ? "" : "boards[" + std::to_string(board) + "] ") +
           "\"" + file.name + "\"";
}

std::string unmetText(const ZoTUnmet& unmet)
{
    return unmet.criterion + " " + unmet.expected + " is expected, and the element has " + unmet.actual;
}

std::string unmetTexts(ZoITrellanInspector& inspector, unsigned candidate)
{
    std::string text;
    for (unsigned i = 0; i < inspector.getUnmetCount(candidate); ++i) {
        text += (i == 0 ? "" : "; ") + unmetText(inspector.getUnmet(candidate, i));
    }
    return text;
}

std::string candidateText(ZoITrellanInspector& inspector, unsigned number)
{
    const ZoTCandidate& candidate = inspector.getCandidate(number);
    if (candidate.isGiven) {
        return "this is its file";
    }
    if (candidate.takenBy >= 0) {
        return "fits, but " + nameOf(inspector, candidate.takenBy) + " comes before";
    }
    return unmetTexts(inspector, number);
}

std::string keysText(const ZoTKeys& keys)
{
    const ordered_json record = keysRecord(keys);
    std::string text;
    for (const auto& [key, value] : record.items()) {
        const bool isOfOtherKind = key == (keys.isFile ? "id" : "targetPath");
        if (!isOfOtherKind) {
            text += (text.empty() ? "" : ", ") + key + " " +
                    value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
        }
    }
    return text;
}

std::string versionText(const std::string& version)
{
    return version.empty() ? "an unknown version" : "version " + version;
}

}  // namespace

Explanations::Explanations(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector, bool forced)
    : records(updater, inspector, true), inspector(inspector), forced(forced)
{
}

ordered_json Explanations::element(unsigned index)
{
    ordered_json record = records.at(index);
    record["reason"] = reason(index);
    ordered_json candidates = ordered_json::array();
    const unsigned count = inspector.explainElement(index);
    for (unsigned i = 0; i < count; ++i) {
        const ZoTCandidate candidate = inspector.getCandidate(i);
        candidates.push_back({{"file", entryOrNull(inspector, candidate.filePosition)},
                              {"board", candidate.board < 0 ? ordered_json() : ordered_json(candidate.board)},
                              {"unmet", unmetOf(inspector, i)},
                              {"takenBy", entryOrNull(inspector, candidate.takenBy)}});
    }
    record["candidates"] = std::move(candidates);
    return record;
}

ordered_json Explanations::file(unsigned position)
{
    const ZoTFile file = inspector.getFile(position);
    ordered_json elements = ordered_json::array();
    const unsigned count = inspector.explainFile(position);
    for (unsigned i = 0; i < count; ++i) {
        const ZoTCandidate candidate = inspector.getCandidate(i);
        elements.push_back({{"index", candidate.element},
                            {"unmet", unmetOf(inspector, i)},
                            {"takenBy", entryOrNull(inspector, candidate.takenBy)},
                            {"given", candidate.isGiven}});
    }
    return {{"file", file.entry}, {"name", file.name}, {"elements", std::move(elements)}};
}

void Explanations::printElement(std::ostream& out, unsigned index)
{
    const ZoTState state = inspector.getElement(index).state;
    out << "Element " << index << ": " << records.listed(index).displayName << '\n'
        << "    " << keysText(inspector.getElementKeys(index)) << '\n'
        << "    " << stateName(state) << ": " << reason(index) << '\n';
    const unsigned count = inspector.explainElement(index);
    for (unsigned i = 0; i < count; ++i) {
        const ZoTCandidate candidate = inspector.getCandidate(i);
        out << "    " << nameOf(inspector, candidate.filePosition, candidate.board) << ": "
            << candidateText(inspector, i) << '\n';
    }
}

void Explanations::printFile(std::ostream& out, unsigned position)
{
    const unsigned count = inspector.explainFile(position);
    out << nameOf(inspector, static_cast<std::int32_t>(position)) << '\n';
    for (unsigned i = 0; i < count; ++i) {
        const ZoTCandidate candidate = inspector.getCandidate(i);
        out << "    element " << candidate.element << ", " << records.listed(candidate.element).displayName << ": "
            << candidateText(inspector, i) << '\n';
    }
    if (count == 0) {
        out << "    no element is on a board of a type that it is for\n";
    }
}

std::string Explanations::reason(unsigned index)
{
    const ZoTElement element = inspector.getElement(index);
    return element.filePosition < 0 ? reasonWithoutFile(index) : reasonWithFile(index, element);
}

std::string Explanations::reasonWithoutFile(unsigned index)
{
    if (inspector.explainElement(index) == 0) {
        return "the archive has no entry";
    }
    const std::string type = "\"" + inspector.getElementKeys(index).boardType + "\"";
    const ZoTCandidate nearest = inspector.getCandidate(0);
    const bool isForType = inspector.getUnmet(0, 0).criterion != "boardType";
    return (isForType ? "no entry for board type " + type + " fits" : "no entry is for board type " + type) +
           "; the nearest is " + nameOf(inspector, nearest.filePosition, nearest.board) + ": " +
           unmetTexts(inspector, 0);
}

std::string Explanations::reasonWithFile(unsigned index, const ZoTElement& element)
{
    switch (element.state) {
        case ZoTState::CUSTOM:
            return "custom elements are left out";
        case ZoTState::EXCLUDED:
            return "it is left out by --exclude; otherwise: " + needText(index, element);
        case ZoTState::BLOCKED:
            return "the archive does not support the target, since elements of the processing nodes have no file; "
                   "otherwise: " +
                   needText(index, element);
        default:
            return needText(index, element);
    }
}

std::string Explanations::needText(unsigned index, const ZoTElement& element)
{
    const ZoTFile file = inspector.getFile(static_cast<unsigned>(element.filePosition));
    const std::string name = nameOf(inspector, element.filePosition);
    if (!element.isListed) {
        return "nothing is installed yet; " + name + " has " + versionText(file.version);
    }
    const std::string installed = versionText(records.listed(index).installedVersion) + " is installed";
    switch (element.need) {
        case ZoTNeed::NOT_VALID:
            return "what is installed is not valid; " + name + " has " + versionText(file.version);
        case ZoTNeed::NOT_IN_USE:
            return "what is installed is not in use; " + name + " has " + versionText(file.version);
        case ZoTNeed::NEWER_VERSION:
            return installed + ", and " + name + " has the newer " + versionText(file.version);
        case ZoTNeed::OTHER_VERSION:
            return installed + ", and " + name + " has " + versionText(file.version);
        case ZoTNeed::OTHER_CHECKSUM:
            return installed + " with checksum " + std::to_string(element.installedChecksum) + ", and " + name +
                   " has checksum " + std::to_string(file.checksum);
        default:
            break;
    }
    const std::string same = file.isUpgrade ? installed + ", and " + name + " is an upgrade with no newer version"
                                            : installed + ", as " + name + " has it";
    return same + (forced && !file.isUpgrade ? "; --force repeats it" : "");
}

}  // namespace TrellanTool
