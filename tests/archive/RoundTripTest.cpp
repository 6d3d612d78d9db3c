// The description that is printed is as good as the one that was read: written to a file beside the update files and
// read again, it gives the same files, the same printouts and the same choice of files for a target.
#include <gtest/gtest.h>

#include <string>

#include "ArchiveGenerator.h"
#include "ArchiveReader.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

using nlohmann::ordered_json;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace {

constexpr unsigned seed = 20240229;
constexpr unsigned archiveCount = 120;

// What a host sees of a command: apply() must succeed; the text is that of run() alone.
std::string runCommand(const std::string& folder, const std::string& descriptionFileName, std::uint32_t command)
{
    ArchiveReader reader(folder, descriptionFileName, command);
    EXPECT_EQ(reader.updater.apply(), 0u) << reader.text();
    reader.messages.clear();
    EXPECT_EQ(reader.updater.run(), 1);
    return reader.text();
}

ordered_json elements(unsigned type, unsigned count)
{
    ordered_json list = ordered_json::array();
    for (unsigned id = 1; id <= count; ++id) {
        list.push_back(updateElement(id, {{"NAME", "Element " + std::to_string(id)},
                                          {"VERSION", "1.2"},
                                          {"CHECKSUM_CRC32", 100 + (type + id) % 3},
                                          {"HW_COMPATIBILITY_ID", id == 3 ? 1 : 0},
                                          {"SW_COMPATIBILITY_ID", id == 2 ? 2 : 0}}));
    }
    return list;
}

// Boards of every type, with and without a variant and with two product ids; one has a file on its flash drive.
ordered_json manyBoards()
{
    std::vector<ordered_json> onHcn = elements(0, 3);
    onHcn.push_back(fileElement(4, {{"NAME", "File"}, {"LOCATION", "/mnt/cn/cfdrive/a"}}));
    return target({board("HCN", {{"PRODUCT/BOARD_TYPE", "A"}}, onHcn,
                         {board("CN", {{"PRODUCT/BOARD_TYPE", "B"}, {"PRODUCT/VARIANT", "V"}}, elements(1, 3)),
                          board("IOMODULE[1]", {{"PRODUCT/BOARD_TYPE", "C"}}, elements(2, 3)),
                          board("IOMODULE[2]", {{"PRODUCT/BOARD_TYPE", "A"}, {"PRODUCT/VARIANT", "V"}}, elements(1, 2)),
                          board("IOMODULE[3]", {{"PRODUCT/BOARD_TYPE", "B"}, {"PRODUCT/ID", 7}}, elements(0, 2))})});
}

// The same boards without processing nodes: an archive need not have a file for each of their elements.
ordered_json ioBoards()
{
    return target({board("IOMODULE[1]", {{"PRODUCT/BOARD_TYPE", "C"}}, elements(2, 3)),
                   board("IOMODULE[2]", {{"PRODUCT/BOARD_TYPE", "A"}}, elements(0, 3)),
                   board("IOMODULE[3]", {{"PRODUCT/BOARD_TYPE", "B"}, {"PRODUCT/VARIANT", "V"}}, elements(1, 3))});
}

// What an update prints, its result, and which elements it updates with which files.
std::string runUpdate(const std::string& folder, const std::string& descriptionFileName)
{
    const SimulatedTarget target(ioBoards());
    ZoNTrellanUpdater::ZoTOptions options;
    options.archivePath = folder;
    options.descriptionFileName = descriptionFileName;
    options.noProgress = true;
    options.command = ZoNTrellanUpdater::UPDATE;
    ZoCTrellanUpdater updater(options);
    MessageCapture messages(updater);
    EXPECT_EQ(updater.apply(), 0u) << messages.text();
    messages.clear();
    std::string outcome = "result " + std::to_string(updater.run()) + messages.text();
    for (const ordered_json& call : target.trace()) {
        if (call["call"] == "update2") {
            outcome += call["board"].dump() + call["id"].dump() + call["path"].dump() + "\n";
        }
    }
    return outcome;
}

void expectSameFile(const ZoSUpdateFile& written, const ZoSUpdateFile& original)
{
    EXPECT_EQ(written.name, original.name);
    EXPECT_EQ(written.sequence, original.sequence);
    EXPECT_EQ(written.version, original.version);
    EXPECT_EQ(written.checksumCrc32, original.checksumCrc32);
    EXPECT_EQ(written.hasTargetPath, original.hasTargetPath);
    EXPECT_EQ(written.mode, original.mode);
}

void expectSameFiles(const TestArchive& archive, const std::vector<GeneratedArchive::File>& expected)
{
    ArchiveReader original(archive);
    EXPECT_TRUE(original.read());
    ArchiveReader written(archive.path(), "written.json");
    EXPECT_TRUE(written.read());
    ASSERT_EQ(original.fileCount(), expected.size());
    ASSERT_EQ(written.fileCount(), expected.size());
    EXPECT_EQ(written.archive().getMaxSequence(), original.archive().getMaxSequence());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_STREQ(original.file(i).name.c_str(), expected[i].name.c_str());
        EXPECT_EQ(original.file(i).sequence, expected[i].sequence);
        EXPECT_EQ(original.file(i).checksumCrc32, expected[i].checksum);
        expectSameFile(written.file(i), original.file(i));
    }
}

// Reads the archive, prints its description and reads that; returns the comparison with the target and the update.
std::string roundTrip(const GeneratedArchive& generated)
{
    using namespace ZoNTrellanUpdater;
    TestArchive archive(generated.description);
    for (const auto& [name, content] : generated.content) {
        archive.addFile(name, content);
    }
    archive.addFile("written.json", runCommand(archive.path(), "archive.json", OUTPUT_DESCRIPTION));
    expectSameFiles(archive, generated.files);
    for (std::uint32_t command : {ARCHIVE_VERSION, PRINT_ARCHIVE, OUTPUT_DESCRIPTION}) {
        EXPECT_EQ(runCommand(archive.path(), "written.json", command),
                  runCommand(archive.path(), "archive.json", command))
            << "command " << command;
    }
    std::string comparison;
    {
        const SimulatedTarget target(manyBoards());
        comparison = runCommand(archive.path(), "archive.json", COMPARE_VERSIONS);
        EXPECT_EQ(runCommand(archive.path(), "written.json", COMPARE_VERSIONS), comparison);
    }
    const std::string update = runUpdate(archive.path(), "archive.json");
    EXPECT_EQ(runUpdate(archive.path(), "written.json"), update);
    return comparison + update;
}

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

}  // namespace

TEST(RoundTrip, WrittenDescriptionIsAsGoodAsTheOneRead)
{
    ArchiveGenerator generator(seed);
    unsigned withMatches = 0, withEqualChecksums = 0, withUpdates = 0;
    for (unsigned i = 0; i < archiveCount; ++i) {
        const GeneratedArchive generated = generator.next();
        SCOPED_TRACE(generated.description.dump());
        const std::string comparison = roundTrip(generated);
        withMatches += contains(comparison, "| N ");
        withEqualChecksums += contains(comparison, "100 == 100");
        withUpdates += contains(comparison, "\"/ROOT/IOMODULE");
        if (HasFailure()) {
            break;
        }
    }
    EXPECT_GT(withMatches, archiveCount / 4);
    EXPECT_GT(withEqualChecksums, 10u);
    EXPECT_GT(withUpdates, archiveCount / 4);
    for (const char* feature :
         {"skipped entry", "id", "targetPath", "boards", "null variant", "variant", "null version", "version",
          "stated checksum", "binary header", "inventory tree", "bitstream", "bitstream without checksum"}) {
        EXPECT_GT(generator.features().at(feature), 20u) << feature;
    }
}
