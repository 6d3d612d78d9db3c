// AssignmentFixture: an updater whose archive and inventory a test fills by hand.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "assignment/ZoCUpdateAssignment.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"

using Element = ZoNUpdateInventory::ZoSUpdateElement;
using File = ZoNUpdateArchive::ZoSUpdateFile;

// What a test states of an element; everything else is as for an element that was just found and is valid and active.
struct ElementData {
    const char* boardType = "T";
    std::uint32_t id = 1;
    const char* version = "";
    bool hasChecksum = false;
    std::uint32_t checksum = 0;
};

// `text` as the library's JSON value. Throws std::invalid_argument when it is none.
ZoNJson::json parseJson(const std::string& text);

// The archive's record of a file entry, as reading it from a description gives it: "sequence" 0, no version and no
// checksum unless stated.
File fileOf(const nlohmann::ordered_json& entry);

class AssignmentFixture : public ::testing::Test {
protected:
    using Json = nlohmann::ordered_json;

    // To be set before the first call of anything below.
    ZoNTrellanUpdater::ZoTOptions options;

    // Appends an element called "Element N" (N: its position), and returns it.
    Element& addElement(const ElementData& data = ElementData());

    // Appends a file-system element with this location, otherwise like addElement.
    Element& addFileElement(const std::string& location, const ElementData& data = ElementData());

    // Appends the file of this entry to the archive.
    void addFile(const Json& entry) { files().push_back(fileOf(entry)); }

    // Appends a file for the elements with the number `id` of boards of type "T"; `more` has further members.
    void addFileForId(std::uint32_t id, Json more = Json::object());

    // Reads a target with one HCN of type "T" that carries one element: they give the inventory its template for new
    // file-system elements. The element is then removed, so that the list is empty.
    void makeTemplate(const Json& hcnParameters = Json::object(), const Json& elementParameters = Json::object());

    OpenUpdater& updater();
    ZoCUpdateAssignment& assignment() { return updater().getAssignment(); }
    ZoCUpdateInventory::ElementList& elements() { return updater().getInventory().getUpdateElementList(); }
    std::vector<File>& files() { return updater().getArchive().getUpdateFileList(); }

    // One value of every element, in list order.
    std::vector<int> fileIndices();
    std::vector<unsigned> phases();

    // One value of every file, in archive order.
    std::vector<unsigned> assignedCounts();

    // What was printed since the last call, joined or one entry for each call of the message callback.
    std::string printed();
    std::vector<std::string> printedFragments();

private:
    std::unique_ptr<OpenUpdater> instance;
    std::unique_ptr<MessageCapture> messages;
};
