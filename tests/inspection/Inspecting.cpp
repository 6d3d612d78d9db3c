#include "Inspecting.h"

#include <filesystem>

using nlohmann::ordered_json;
using namespace ZoNTrellanInspector;

namespace {

std::string nameOf(ZoTState state)
{
    switch (state) {
        case ZoTState::NO_FILE:
            return "noFile";
        case ZoTState::CUSTOM:
            return "custom";
        case ZoTState::UP_TO_DATE:
            return "upToDate";
        case ZoTState::EXCLUDED:
            return "excluded";
        case ZoTState::BLOCKED:
            return "blocked";
        case ZoTState::UPDATE:
            return "update";
        case ZoTState::UPDATED:
            return "updated";
        case ZoTState::FAILED:
            return "failed";
        case ZoTState::CANCELLED:
            return "cancelled";
        case ZoTState::MISSING_FILE:
            return "missingFile";
        case ZoTState::NOT_STARTED:
            return "notStarted";
        case ZoTState::RUNNING:
            return "running";
    }
    return "unknown";
}

std::string nameOf(ZoTSeverity severity)
{
    switch (severity) {
        case ZoTSeverity::ERROR:
            return "error";
        case ZoTSeverity::WARNING:
            return "warning";
        case ZoTSeverity::NOTE:
            return "note";
    }
    return "unknown";
}

ordered_json merged(ordered_json object, const ordered_json& more)
{
    object.update(more);
    return object;
}

}  // namespace

unsigned Inspecting::apply(unsigned command)
{
    messages.reset();
    inspector.reset();
    updater.reset();
    simulated.reset();

    ordered_json document = target(boards);
    if (!script.empty()) {
        document["script"] = script;
    }
    if (hasFlashDrive) {
        document["flashDrive"] = "cfdrive";
    }
    simulated = std::make_unique<SimulatedTarget>(document);
    std::filesystem::create_directory(simulated->folder() / "cfdrive");
    archive = std::make_unique<TestArchive>(description(entries));
    for (const ordered_json& entry : entries) {
        const std::string name = entry.at("name");
        if (missingFiles.count(name) == 0) {
            archive->addFile(name, contents.count(name) != 0 ? contents.at(name) : "content");
        }
    }
    options.command = command;
    if (options.archivePath.empty()) {
        options.archivePath = archive->path();
    }
    updater.reset(ZoITrellanUpdater::createInstance(options));
    options.archivePath.clear();
    inspector.reset(ZoITrellanInspector::createInstance(*updater));
    messages.emplace(*updater);
    return updater->apply();
}

Inspecting::Names Inspecting::states() const
{
    Names names;
    for (unsigned i = 0; i < inspector->getElementCount(); ++i) {
        names.push_back(nameOf(inspector->getElement(i).state));
    }
    return names;
}

Inspecting::Names Inspecting::errorsOf(unsigned index) const
{
    Names texts;
    for (unsigned i = 0; i < inspector->getElementErrorCount(index); ++i) {
        texts.push_back(inspector->getElementError(index, i).text);
    }
    return texts;
}

Inspecting::Names Inspecting::check()
{
    inspector->checkUsedFiles(nullptr, nullptr);
    Names lines;
    for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
        const ZoTFinding& finding = inspector->getFinding(i);
        lines.push_back(nameOf(finding.severity) + " " + finding.rule + " " + finding.pointer);
    }
    return lines;
}

Inspecting::Names Inspecting::messagesFound() const
{
    Names texts;
    for (unsigned i = 0; i < inspector->getFindingCount(); ++i) {
        texts.push_back(inspector->getFinding(i).message);
    }
    return texts;
}

ordered_json hcnBoard(std::vector<ordered_json> elements)
{
    return board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}, {"PRODUCT/NAME", "Processor board"}}, std::move(elements));
}

ordered_json ioBoard(std::vector<ordered_json> elements)
{
    return board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}, {"PRODUCT/NAME", "I/O board"}}, std::move(elements));
}

ordered_json installed(unsigned id, ordered_json more)
{
    return updateElement(
        id, merged({{"NAME", "Element " + std::to_string(id)}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 5}}, more));
}

ordered_json ioEntry(const std::string& name, unsigned id, ordered_json more)
{
    ordered_json entry = {{"boardType", "IO7"}, {"id", id}, {"version", "2.0"}, {"checksumCrc32", 6}, {"sequence", id}};
    if (more.contains("targetPath")) {
        entry.erase("id");
    }
    ordered_json file = fileEntry(name, merged(entry, more));
    return file;
}
