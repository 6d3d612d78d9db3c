// OperationFixture: base of the tests of updates.
//
// A test adds elements to a simulated target; each gets an update file of its own in the archive. prepare() makes
// target and archive, reads both with an updater and leaves everything ready for the update.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "assignment/ZoCUpdateAssignment.h"
#include "operation/Journal.h"
#include "operation/ZoCUpdateOperation.h"
#include "support/ErrorPool.h"
#include "support/OpenUpdater.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"

class OperationFixture : public ::testing::Test {
protected:
    using Json = nlohmann::ordered_json;
    using Element = ZoNUpdateInventory::ZoSUpdateElement;
    using State = ZoNUpdateInventory::UpdateState;
    using enum ZoNUpdateInventory::UpdateState;
    using PhaseList = ZoCUpdateOperation::PhaseList;

    OperationFixture();

    // Adds element `id` of board `board` (/ROOT/IOMODULE[board], labelled "Board 1, SN 1, Element 1" for 1 and 1) and
    // its file "b1e1.bin" with the given sequence number. Elements are listed in the order of adding, board by board.
    void addElement(unsigned board, unsigned id, unsigned sequence = 1);

    // The same for a file on the flash drive: FILESYSTEM_ELEMENT[id], "Board 1, SN 1, File 1", file "b1f1.bin".
    void addFileElement(unsigned board, unsigned id, const std::string& location, unsigned sequence = 1);

    // Adds a file and its entry to the archive.
    void addFile(const std::string& name, Json overrides);

    // Adds an HCN and a CN without elements.
    void addHcn();
    void addCn();

    // Makes target and archive, creates the updater and reads both; what was said and traced until then is forgotten. A
    // second call starts over with a fresh target, archive and updater.
    void prepare();

    // The whole update, with its errors in `errors`.
    bool update() { return updater->getOperation().update(errors); }

    ZoCUpdateOperation& operation() { return updater->getOperation(); }
    Element& element(unsigned index);
    std::vector<State> states();

    // Gives the elements these states. Returns all of them, as the elements of a phase.
    PhaseList become(const std::vector<State>& newStates);

    ZoNUpdateArchive::ZoSUpdateFile& file(unsigned index)
    {
        return updater->getArchive().getUpdateFileList().at(index);
    }

    // Calls of the platform since prepare(): all, those of one name, and the names alone.
    std::vector<Json> trace() const;
    std::vector<Json> calls(const std::string& name) const;
    std::vector<std::string> callNames() const;

    // The script of an element's update: {"start": [...], "polls": [...], "finish": [...]}.
    Json& scriptOf(unsigned board, unsigned id);

    // Entries of a script; its lists are Json::array({entry, ...}). A call that adds one error, and how far a polled
    // update is.
    static Json failing(unsigned code, const std::string& text);
    static Json running(std::uint32_t done, std::uint32_t total);
    static Json finished();
    static Json failed();

    // Lets the start of an element's update fail with the error "4 no room", and lets its first poll find it failed.
    void letStartFail(unsigned board, unsigned id)
    {
        scriptOf(board, id)["start"] = Json::array({failing(4, "no room")});
    }
    void letUpdateFail(unsigned board, unsigned id) { scriptOf(board, id)["polls"] = Json::array({failed()}); }

    // The folder that is the flash drive; present when `hasFlashDrive` was set before prepare().
    std::filesystem::path drive() const { return simulated->folder() / "cfdrive"; }

    ZoNTrellanUpdater::ZoTOptions options;  // an update without progress lines; no path: the archive's own folder
    bool hasFlashDrive = false;
    Json script = Json::object();
    std::vector<std::string> missingFiles;        // files that are not put into the archive
    std::map<std::string, std::string> contents;  // contents of files that differ from the usual one

    std::unique_ptr<SimulatedTarget> simulated;
    std::unique_ptr<TestArchive> archive;
    std::unique_ptr<OpenUpdater> updater;
    std::optional<Journal> journal;
    ErrorPool errors;

private:
    std::vector<Json> boards() const;

    std::vector<unsigned> boardOrder;
    std::map<unsigned, std::vector<Json>> elementsOfBoard;
    std::vector<Json> nodes;
    std::vector<Json> fileEntries;
    std::size_t traceStart = 0;
};

// The text with "*" in the place of every spinner: it starts where an earlier update in the process has left it. For
// texts without other "-", "\\", "|" and "/".
std::string withStars(std::string text);

// Code and text of every error of the list: "4 lost".
std::vector<std::string> listed(const ZoCErrorListPool& list);

namespace ZoNUpdateInventory {

// Lets a failed expectation name the state.
void PrintTo(UpdateState state, std::ostream* stream);

}  // namespace ZoNUpdateInventory
