#include "assignment/AssignmentFixture.h"

#include <cstdio>
#include <stdexcept>

#include "support/ErrorPool.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

using nlohmann::ordered_json;

ZoNJson::json parseJson(const std::string& text)
{
    std::string copy = text;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(fmemopen(copy.data(), copy.size(), "rb"), std::fclose);
    ZoNJson::json value = ZoNJson::json::parse(stream.get());
    if (value.is_invalid()) {
        throw std::invalid_argument("not a JSON document: " + text);
    }
    return value;
}

File fileOf(const ordered_json& entry)
{
    File file;
    file.name = ZoCString(entry.value("name", "file.bin").c_str());
    file.sequence = entry.value("sequence", 0u);
    if (entry.contains("version") && entry["version"].is_string()) {
        file.version = ZoCVersion(entry["version"].get<std::string>().c_str());
    }
    file.checksumCrc32 = entry.value("checksumCrc32", 0xFFFFFFFEu);
    file.jsonEntry = parseJson(entry.dump());
    file.hasTargetPath = entry.contains("targetPath");
    for (const ordered_json& board : entry.value("boards", ordered_json::array())) {
        file.hasTargetPath = file.hasTargetPath || board.contains("targetPath");
    }
    if (entry.value("mode", "standard") == "upgrade") {
        file.mode = ZoNUpdateArchive::UpdateMode::upgrade;
    }
    return file;
}

Element& AssignmentFixture::addElement(const ElementData& data)
{
    Element& element = elements().emplace_back();
    element.index = static_cast<std::uint32_t>(elements().size() - 1);
    element.boardType = ZoCString(data.boardType);
    element.id = data.id;
    element.version = ZoCVersion(data.version);
    element.hasChecksum = data.hasChecksum;
    element.checksumCrc32 = data.checksum;
    element.configuration = false;
    element.valid = true;
    element.active = true;
    element.displayName = ZoCString(("Element " + std::to_string(element.index)).c_str());
    element.createErrorLists();
    return element;
}

Element& AssignmentFixture::addFileElement(const std::string& location, const ElementData& data)
{
    Element& element = addElement(data);
    element.isFileSystemElement = true;
    element.location = ZoCString(location.c_str());
    return element;
}

void AssignmentFixture::addFileForId(std::uint32_t id, Json more)
{
    Json entry = {{"boardType", "T"}, {"id", id}};
    entry.update(more);
    addFile(entry);
}

void AssignmentFixture::makeTemplate(const Json& hcnParameters, const Json& elementParameters)
{
    Json parameters = {{"PRODUCT/BOARD_TYPE", "T"}};
    parameters.update(hcnParameters);
    Json firmwareParameters = {{"NAME", "UserFirmware"}};
    firmwareParameters.update(elementParameters);
    const SimulatedTarget simulated(target({board("HCN", parameters, {updateElement(1, firmwareParameters)})}));
    ErrorPool errors;
    ASSERT_EQ(updater().getInventory().getInventory(errors), 1);
    elements().clear();
    ASSERT_NE(updater().getInventory().getFileSystemElementTemplate(), nullptr);
}

OpenUpdater& AssignmentFixture::updater()
{
    if (!instance) {
        instance = std::make_unique<OpenUpdater>(options);
        messages = std::make_unique<MessageCapture>(*instance);
    }
    return *instance;
}

std::vector<int> AssignmentFixture::fileIndices()
{
    std::vector<int> result;
    for (const Element& element : elements()) {
        result.push_back(element.updateFileIndex);
    }
    return result;
}

std::vector<unsigned> AssignmentFixture::phases()
{
    std::vector<unsigned> result;
    for (const Element& element : elements()) {
        result.push_back(element.phase);
    }
    return result;
}

std::vector<unsigned> AssignmentFixture::assignedCounts()
{
    std::vector<unsigned> result;
    for (const File& file : files()) {
        result.push_back(file.assignedElementCount);
    }
    return result;
}

std::string AssignmentFixture::printed()
{
    updater();
    std::string text = messages->text();
    messages->clear();
    return text;
}

std::vector<std::string> AssignmentFixture::printedFragments()
{
    updater();
    std::vector<std::string> fragments = messages->fragments();
    messages->clear();
    return fragments;
}
