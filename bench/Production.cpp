#include "Production.h"

#include <cstring>
#include <map>
#include <utility>

#include "base/Crc32.h"
#include "support/TempDir.h"

namespace {

constexpr unsigned boardTypes = 40;
constexpr const char* image = "the image of each board";

bool hasBoards(unsigned number)
{
    return number % 5 == 0;
}

bool isFile(unsigned number)
{
    return number % 50 == 1;
}

bool isUpToDate(unsigned number)
{
    return number % 4 == 0;
}

std::string boardTypeOf(unsigned number)
{
    return numbered("KR", 5000 + number / mostElementsOfBoard % boardTypes);
}

std::string variantOf(unsigned number)
{
    return numbered("V", number / mostElementsOfBoard % 3);
}

std::string pathOf(unsigned number)
{
    return numbered("/opt/application/file-", number) + ".cfg";
}

std::string versionOf(unsigned number)
{
    return "23." + std::to_string(number % 7) + "." + std::to_string(number % 50);
}

std::uint32_t checksumOf(unsigned number)
{
    return number * 2654435761U;
}

// The first object is for the predecessors of the board.
Json boardsOf(unsigned number)
{
    const std::string type = boardTypeOf(number);
    return {{{"boardType", {type + "-A", type + "-B"}}, {"id", number}, {"boardVariant", nullptr}},
            {{"boardType", type},
             {"id", number},
             {"boardVariant", {nullptr, variantOf(number)}},
             {"boardId", {0, 1}},
             {"hwCompatibilityId", {1, 2, 3}}}};
}

// What an entry says besides the boards that it is for, unless it has board objects.
void addKeys(Json& members, unsigned number, bool forFlashDrive)
{
    members["boardType"] = boardTypeOf(number);
    members["boardVariant"] = variantOf(number);
    members["hwCompatibilityId"] = {1, 2, 3};
    if (forFlashDrive) {
        members["targetPath"] = pathOf(number);
    } else {
        members["id"] = number;
        members["swCompatibilityId"] = {number % 5};
    }
}

Json membersOf(unsigned number, bool forFlashDrive)
{
    Json members = {{"name", "firmware/" + boardTypeOf(number) + numbered("/image-", number) + ".bin"},
                    {"sequence", number % 10 + 1},
                    {"version", versionOf(number)},
                    {"checksumCrc32", checksumOf(number)}};
    if (hasBoards(number)) {
        members["boards"] = boardsOf(number);
    } else {
        addKeys(members, number, forFlashDrive);
    }
    return members;
}

std::string imageOf(unsigned number)
{
    return "firmware/" + boardTypeOf(number) + ".bin";
}

Json deviceMembersOf(unsigned number)
{
    static const std::uint32_t checksum = [] {
        ZoNUpdateBase::Crc32 crc32;
        crc32.add(reinterpret_cast<const unsigned char*>(image), std::strlen(image));
        return crc32.value();
    }();
    Json members = membersOf(number, false);
    members["name"] = imageOf(number);
    members["checksumCrc32"] = checksum;
    return members;
}

// Where the element is, and what is compared of it.
void place(Element& element, unsigned number, bool onFlashDrive)
{
    element.boardType = ZoCString(boardTypeOf(number).c_str());
    element.variant = ZoCString(variantOf(number).c_str());
    element.hwCompatibilityId = number % 3 + 1;
    if (onFlashDrive) {
        element.isFileSystemElement = true;
        element.location = ZoCString(pathOf(number).c_str());
    } else {
        element.id = number;
        element.swCompatibilityId = hasBoards(number) ? 0 : number % 5;
    }
}

void change(Element& element, unsigned number)
{
    place(element, number, isFile(number));
    if (isUpToDate(number)) {
        element.version = ZoCVersion(versionOf(number).c_str());
        element.checksumCrc32 = checksumOf(number);
    }
}

using Folders = std::map<std::pair<unsigned, unsigned>, TempDir>;  // by number of elements, and of those of a board

// The folder for this size, which is written when it is new.
const TempDir& folderOf(Folders& folders, unsigned count, const Case& data)
{
    const auto [folder, isNew] = folders.try_emplace({count, data.elementsOfBoard});
    if (isNew) {
        folder->second.write("archive.json", textOf(descriptionOf(count, data.members)));
        folder->second.write("target.json", textOf(targetOf(count, data)));
    }
    return folder->second;
}

}  // namespace

// Eight elements one behind the other are on boards of the same type and variant, however many boards.
Case production(unsigned elementsOfBoard)
{
    return {[](unsigned i) { return membersOf(i, isFile(i)); }, change, elementsOfBoard};
}

Case productionOfDevice()
{
    return {deviceMembersOf, [](Element& element, unsigned i) { place(element, i, false); }, mostElementsOfBoard};
}

const std::filesystem::path& productionFolder(unsigned count, unsigned elementsOfBoard)
{
    static Folders folders;
    return folderOf(folders, count, production(elementsOfBoard)).path();
}

const std::filesystem::path& productionOfDeviceFolder(unsigned count)
{
    static Folders folders;
    const TempDir& folder = folderOf(folders, count, productionOfDevice());
    for (unsigned i = 0; i < boardTypes; ++i) {
        folder.write(imageOf(i * mostElementsOfBoard), image);
    }
    return folder.path();
}
