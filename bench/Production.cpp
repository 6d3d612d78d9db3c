#include "Production.h"

#include <map>

#include "support/TempDir.h"

namespace {

constexpr unsigned elementsOfBoard = 8;

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
    return numbered("KR", 5000 + number / elementsOfBoard % 40);
}

std::string variantOf(unsigned number)
{
    return numbered("V", number / elementsOfBoard % 3);
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

Json membersOf(unsigned number)
{
    Json members = {{"name", "firmware/" + boardTypeOf(number) + numbered("/image-", number) + ".bin"},
                    {"sequence", number % 10 + 1},
                    {"version", versionOf(number)},
                    {"checksumCrc32", checksumOf(number)}};
    if (hasBoards(number)) {
        members["boards"] = boardsOf(number);
        return members;
    }
    members["boardType"] = boardTypeOf(number);
    members["boardVariant"] = variantOf(number);
    members["hwCompatibilityId"] = {1, 2, 3};
    if (isFile(number)) {
        members["targetPath"] = pathOf(number);
    } else {
        members["id"] = number;
        members["swCompatibilityId"] = {number % 5};
    }
    return members;
}

void change(Element& element, unsigned number)
{
    element.boardType = ZoCString(boardTypeOf(number).c_str());
    element.variant = ZoCString(variantOf(number).c_str());
    element.hwCompatibilityId = number % 3 + 1;
    if (isFile(number)) {
        element.isFileSystemElement = true;
        element.location = ZoCString(pathOf(number).c_str());
    } else {
        element.id = number;
        element.swCompatibilityId = hasBoards(number) ? 0 : number % 5;
    }
    if (isUpToDate(number)) {
        element.version = ZoCVersion(versionOf(number).c_str());
        element.checksumCrc32 = checksumOf(number);
    }
}

}  // namespace

Case production()
{
    return {membersOf, change, elementsOfBoard};
}

const std::filesystem::path& productionFolder(unsigned count)
{
    static std::map<unsigned, TempDir> folders;
    const auto [folder, isNew] = folders.try_emplace(count);
    if (isNew) {
        folder->second.write("archive.json", textOf(descriptionOf(count, membersOf)));
        folder->second.write("target.json", textOf(targetOf(count, production())));
    }
    return folder->second.path();
}
