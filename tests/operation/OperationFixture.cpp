#include "operation/OperationFixture.h"

#include <algorithm>

namespace {

std::string addressOf(unsigned board)
{
    return board == 1 ? "/ROOT/IOMODULE" : "/ROOT/IOMODULE[" + std::to_string(board) + "]";
}

}  // namespace

OperationFixture::OperationFixture()
{
    options.descriptionFileName = "archive.json";
    options.noProgress = true;
    options.command = ZoNTrellanUpdater::UPDATE;
    ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
}

void OperationFixture::addElement(unsigned board, unsigned id, unsigned sequence)
{
    if (elementsOfBoard[board].empty()) {
        boardOrder.push_back(board);
    }
    elementsOfBoard[board].push_back(updateElement(id, {{"NAME", "Element " + std::to_string(id)}, {"ID", id}}));
    addFile("b" + std::to_string(board) + "e" + std::to_string(id) + ".bin",
            {{"sequence", sequence}, {"boardType", "T" + std::to_string(board)}, {"id", id}});
}

void OperationFixture::addFileElement(unsigned board, unsigned id, const std::string& location, unsigned sequence)
{
    if (elementsOfBoard[board].empty()) {
        boardOrder.push_back(board);
    }
    elementsOfBoard[board].push_back(fileElement(id, {{"NAME", "File " + std::to_string(id)}, {"LOCATION", location}}));
    addFile("b" + std::to_string(board) + "f" + std::to_string(id) + ".bin",
            {{"sequence", sequence}, {"boardType", "T" + std::to_string(board)}, {"targetPath", location}});
}

void OperationFixture::addHcn()
{
    nodes.push_back(item("HCN", Json::object()));
}

void OperationFixture::addCn()
{
    nodes.push_back(item("CN", Json::object()));
}

void OperationFixture::addFile(const std::string& name, Json overrides)
{
    fileEntries.push_back(fileEntry(name, std::move(overrides)));
}

std::vector<OperationFixture::Json> OperationFixture::boards() const
{
    std::vector<Json> items = nodes;
    for (const unsigned number : boardOrder) {
        const std::string text = std::to_string(number);
        items.push_back(board(
            "IOMODULE[" + text + "]",
            {{"PRODUCT/BOARD_TYPE", "T" + text}, {"PRODUCT/NAME", "Board " + text}, {"PRODUCT/SERIAL_NUMBER", number}},
            elementsOfBoard.at(number)));
    }
    return items;
}

void OperationFixture::prepare()
{
    Json document = target(boards());
    if (!script.empty()) {
        document["script"] = script;
    }
    if (hasFlashDrive) {
        document["flashDrive"] = "cfdrive";
    }
    journal.reset();
    updater.reset();
    simulated.reset();
    simulated = std::make_unique<SimulatedTarget>(document);
    std::filesystem::create_directory(drive());

    archive = std::make_unique<TestArchive>(description(fileEntries));
    for (const Json& entry : fileEntries) {
        const std::string name = entry.at("name");
        if (std::find(missingFiles.begin(), missingFiles.end(), name) == missingFiles.end()) {
            archive->addFile(name, contents.count(name) != 0 ? contents.at(name) : "content of " + name);
        }
    }

    ZoNTrellanUpdater::ZoTOptions actual = options;
    if (actual.archivePath.empty()) {
        actual.archivePath = archive->path();
    }
    updater = std::make_unique<OpenUpdater>(actual);
    journal.emplace(*updater);
    ASSERT_EQ(updater->apply(), 0u) << journal->text();
    journal->clear();
    traceStart = simulated->trace().size();
}

OperationFixture::Element& OperationFixture::element(unsigned index)
{
    ZoCUpdateInventory::ElementList& list = updater->getInventory().getUpdateElementList();
    if (index >= list.size()) {
        throw std::out_of_range("no element " + std::to_string(index));
    }
    return *std::next(list.begin(), index);
}

std::vector<OperationFixture::State> OperationFixture::states()
{
    std::vector<State> result;
    for (const Element& each : updater->getInventory().getUpdateElementList()) {
        result.push_back(static_cast<State>(each.updateState));
    }
    return result;
}

OperationFixture::PhaseList OperationFixture::become(const std::vector<State>& newStates)
{
    PhaseList list;
    for (const State state : newStates) {
        list.push_back(&element(static_cast<unsigned>(list.size())));
        list.back()->updateState = state;
    }
    return list;
}

std::vector<OperationFixture::Json> OperationFixture::trace() const
{
    const std::vector<Json> all = simulated->trace();
    return {all.begin() + static_cast<std::ptrdiff_t>(traceStart), all.end()};
}

std::vector<OperationFixture::Json> OperationFixture::calls(const std::string& name) const
{
    std::vector<Json> result;
    for (const Json& call : trace()) {
        if (call.at("call") == name) {
            result.push_back(call);
        }
    }
    return result;
}

std::vector<std::string> OperationFixture::callNames() const
{
    std::vector<std::string> names;
    for (const Json& call : trace()) {
        names.push_back(call.at("call"));
    }
    return names;
}

OperationFixture::Json& OperationFixture::scriptOf(unsigned board, unsigned id)
{
    return script["elements"][addressOf(board) + "#" + std::to_string(id)];
}

OperationFixture::Json OperationFixture::failing(unsigned code, const std::string& text)
{
    return {{"errors", Json::array({{{"code", code}, {"text", text}}})}};
}

OperationFixture::Json OperationFixture::running(std::uint32_t done, std::uint32_t total)
{
    return {{"status", 1}, {"done", done}, {"total", total}};
}

OperationFixture::Json OperationFixture::finished()
{
    return {{"status", 2}};
}

OperationFixture::Json OperationFixture::failed()
{
    return {{"status", 3}};
}

std::string withStars(std::string text)
{
    for (char& character : text) {
        if (std::string("-\\|/").find(character) != std::string::npos) {
            character = '*';
        }
    }
    return text;
}

std::vector<std::string> listed(const ZoCErrorListPool& list)
{
    std::vector<std::string> result;
    for (unsigned i = 0; i < list.getErrorCount(); ++i) {
        result.push_back(std::to_string(list.getErrorCode(i)) + " " + list.getErrorText(i));
    }
    return result;
}

void ZoNUpdateInventory::PrintTo(UpdateState state, std::ostream* stream)
{
    constexpr const char* names[] = {"NOTHING_TO_DO", "PENDING", "RUNNING", "FAILED", "CANCELLED", "FINISHED"};
    *stream << (state < std::size(names) ? names[state] : std::to_string(state));
}
