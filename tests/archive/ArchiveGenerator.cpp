#include "ArchiveGenerator.h"

#include "support/UpdateFiles.h"

using nlohmann::ordered_json;

namespace {

constexpr std::uint32_t missingChecksum = 0xFFFFFFFE;

}  // namespace

ordered_json ArchiveGenerator::pick(const std::vector<ordered_json>& values)
{
    return values[below(static_cast<unsigned>(values.size()))];
}

GeneratedArchive ArchiveGenerator::next()
{
    GeneratedArchive archive;
    archive.description["info"] = makeInfo();
    archive.description["files"] = ordered_json::array();
    for (unsigned count = below(9), i = 0; i < count; ++i) {
        ordered_json entry = makeEntry("file" + std::to_string(i) + ".bin");
        if (oneIn(12)) {
            saw("skipped entry");
            entry["featureLevel"] = 3;
        } else {
            const std::uint32_t checksum = addChecksum(entry, archive);
            archive.files.push_back({entry["name"], entry["sequence"], checksum});
        }
        archive.description["files"].push_back(entry);
    }
    return archive;
}

ordered_json ArchiveGenerator::makeInfo()
{
    ordered_json info = {{"formatVersion", pick({"1.0", "1.3"})},
                         {"archiveVersion", pick({"1.0", "23.1", "23.1.4", "23.2a12", "5.0s3.7", "1.0r3p1"})},
                         {"productName", pick({"Product", "", "M\u00FCller \"x\""})},
                         {"archiveName", "Generated"}};
    if (oneIn(2)) {
        info["archiveVariant"] = pick({"", "lean"});
    }
    return info;
}

ordered_json ArchiveGenerator::makeEntry(const std::string& name)
{
    ordered_json entry = {{"name", name}, {"sequence", below(4)}};
    const std::string targetKey = oneIn(3) ? "targetPath" : "id";
    saw(targetKey);
    if (oneIn(2)) {
        entry["boardType"] = pick({"A", "B", {"A", "B"}, {"B", "C"}});
        addTarget(entry, targetKey);
    } else {
        addBoards(entry, targetKey);
    }
    addCriteria(entry);
    addFileProperties(entry);
    return entry;
}

void ArchiveGenerator::addBoards(ordered_json& entry, const std::string& targetKey)
{
    saw("boards");
    bool everyBoardHasTarget = true;
    for (unsigned count = 1 + below(3), i = 0; i < count; ++i) {
        ordered_json board = {{"boardType", pick({"A", "B", "C", {"A", "C"}})}};
        addCriteria(board);
        if (oneIn(2)) {
            addTarget(board, targetKey);
        } else {
            everyBoardHasTarget = false;
        }
        entry["boards"].push_back(board);
    }
    if (!everyBoardHasTarget || oneIn(4)) {
        addTarget(entry, targetKey);
    }
}

void ArchiveGenerator::addTarget(ordered_json& object, const std::string& targetKey)
{
    object[targetKey] =
        targetKey == "id" ? ordered_json(1 + below(3)) : pick({"/mnt/cn/cfdrive/a", "/mnt/cn/cfdrive/b"});
}

void ArchiveGenerator::addCriteria(ordered_json& object)
{
    if (oneIn(3)) {
        object["boardVariant"] =
            pick({nullptr, "V", ordered_json::array({"V", nullptr}), ordered_json::array({nullptr})});
        saw(object["boardVariant"].is_null() ? "null variant" : "variant");
    }
    if (oneIn(6)) {
        object["boardId"] = pick({0, 7, {0, 7}});
    }
    if (oneIn(6)) {
        object["hwCompatibilityId"] = pick({0, {1, 0}, 1});
    }
    if (oneIn(6)) {
        object["swCompatibilityId"] = pick({0, {2, 0}, 2});
    }
}

void ArchiveGenerator::addFileProperties(ordered_json& entry)
{
    if (oneIn(2)) {
        entry["version"] = pick({nullptr, "1.2", "23.1.4b2"});
        saw(entry["version"].is_null() ? "null version" : "version");
    }
    if (oneIn(3)) {
        entry["mode"] = pick({"standard", "upgrade"});
    }
    if (oneIn(4)) {
        entry["note"] = pick({-1, 2.5, {{"x", nullptr}}});
    }
}

std::uint32_t ArchiveGenerator::addChecksum(ordered_json& entry, GeneratedArchive& archive)
{
    const std::uint32_t checksum = 100 + below(3);
    if (oneIn(2)) {
        saw("stated checksum");
        entry["checksumCrc32"] = checksum;
        return checksum;
    }
    return makeContent(checksum, archive.content[entry["name"]]);
}

std::uint32_t ArchiveGenerator::makeContent(std::uint32_t checksum, std::string& content)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = checksum;
    switch (below(4)) {
        case 0:
            saw("binary header");
            content = UpdateFiles::binaryFile(header);
            return checksum;
        case 1:
            saw("inventory tree");
            content = UpdateFiles::inventoryFile({{"FIRMWARE/TYPE_ID", 5}}, checksum);
            return checksum;
        case 2:
            saw("bitstream");
            content = UpdateFiles::bitstreamFile(checksum);
            return checksum;
        default:
            saw("bitstream without checksum");
            content = UpdateFiles::bitstreamFile(checksum, 88);
            return missingChecksum;
    }
}
