#include "assignment/FileIndex.h"

#include <unordered_set>

#include "assignment/EntryProperties.h"
#include "updater/ZoCTrellanUpdater.h"

using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

// Keys are a board type and what the file is for. A NUL keeps them apart: a board type that holds one itself only makes
// more candidates.
std::string keyForId(const std::string& boardType, std::uint32_t id)
{
    return boardType + '\0' + "id " + std::to_string(id);
}

std::string keyForPath(const std::string& boardType, const std::string& targetPath)
{
    return boardType + '\0' + "path " + targetPath;
}

std::string keyForAnyPath(const std::string& boardType)
{
    return boardType + '\0' + "any path";
}

std::vector<std::string> boardTypesOf(const json& object)
{
    const json& boardType = object["boardType"];
    if (boardType.is_string()) {
        return {std::string(boardType)};
    }
    std::vector<std::string> types;
    for (const json& type : boardType) {
        if (type.is_string()) {
            types.emplace_back(type);
        }
    }
    return types;
}

}  // namespace

FileIndex::FileIndex(const std::vector<ZoSUpdateFile>& files)
{
    std::uint32_t index = 0;
    for (const ZoSUpdateFile& file : files) {
        addFile(file, index++);
    }
}

void FileIndex::addFile(const ZoSUpdateFile& file, std::uint32_t index)
{
    static const std::string idKey = "id";
    static const std::string targetPathKey = "targetPath";

    std::unordered_set<std::string> seenTypes;
    const auto addBoard = [&](const json& board) {
        const EntryProperties properties(board, file.jsonEntry);
        const json* const id = properties.find(idKey);
        const json* const path = properties.find(targetPathKey);
        const std::string targetPath = path != nullptr ? std::string(*path) : std::string();
        for (const std::string& type : boardTypesOf(board)) {
            if (!seenTypes.insert(type).second) {
                continue;  // only the first board object of a type counts
            }
            if (file.hasTargetPath) {
                filesByKey[keyForPath(type, targetPath)].push_back(index);
                filesByKey[keyForAnyPath(type)].push_back(index);
            } else if (id != nullptr) {
                filesByKey[keyForId(type, static_cast<unsigned>(*id))].push_back(index);
            }
        }
    };
    if (!file.jsonEntry.contains("boards")) {
        addBoard(file.jsonEntry);
        return;
    }
    for (const json& board : file.jsonEntry["boards"]) {
        addBoard(board);
    }
}

const std::vector<std::uint32_t>& FileIndex::candidates(const ZoSUpdateElement& element) const
{
    static const std::vector<std::uint32_t> none;
    const std::string boardType = ZoCTrellanUpdater::ZoCString2tstring(element.boardType);
    const std::string location = ZoCTrellanUpdater::ZoCString2tstring(element.location);
    const std::string key = !element.isFileSystemElement ? keyForId(boardType, element.id)
                            : location == "*"            ? keyForAnyPath(boardType)
                                                         : keyForPath(boardType, location);
    const auto entry = filesByKey.find(key);
    return entry != filesByKey.end() ? entry->second : none;
}

}  // namespace ZoNUpdateAssignment
