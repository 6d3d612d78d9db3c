// The check of the update files themselves: whether they are there, and whether they are what is stated.
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "Inspecting.h"
#include "support/Unprivileged.h"
#include "support/UpdateFiles.h"

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ContentRules : public Inspecting {
protected:
    // An element with the file "one.bin", for which its entry states this checksum; null: none.
    void applyOne(const Json& checksum, const std::string& content)
    {
        boards = {ioBoard({installed(1)})};
        entries = {ioEntry("one.bin", 1, {{"checksumCrc32", checksum}})};
        if (checksum.is_null()) {
            entries[0].erase("checksumCrc32");
        }
        contents["one.bin"] = content;
        ASSERT_EQ(apply(), 0u);
    }

    // The same for a file on the flash drive.
    void applyFlashFile(const Json& checksum, const std::string& content)
    {
        boards = {hcnBoard({installed(1)})};
        entries = {fileEntry("hcn.bin", {{"checksumCrc32", 0x5D5F37B1u}}),
                   fileEntry("one.bin", {{"targetPath", "one.bin"}, {"checksumCrc32", checksum}})};
        contents = {{"hcn.bin", "hcn"}, {"one.bin", content}};
        if (checksum.is_null()) {
            entries[1].erase("checksumCrc32");
        }
        ASSERT_EQ(apply(), 0u);
    }

    fs::path file(const std::string& name) const { return fs::path(archive->path()) / name; }
};

// The CRC-32 of "123456789".
constexpr unsigned crc32OfDigits = 0xCBF43926;

}  // namespace

TEST_F(ContentRules, FindNothingWrongWithAPlainFileWhoseCrc32IsStated)
{
    applyOne(crc32OfDigits, "123456789");
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ContentRules, HoldTheStatedChecksumOfAPlainFileAgainstItsBytes)
{
    applyOne(crc32OfDigits, "123456780");
    EXPECT_THAT(check(), ElementsAre("error checksum /files/0/checksumCrc32"));
    EXPECT_THAT(
        messagesFound(),
        ElementsAre("the stated checksum is 3421780262, but the CRC-32 of the file is 2988999042: put the right "
                    "file in its place, or state that"));
}

TEST_F(ContentRules, HoldTheStatedChecksumAgainstTheHeaderOfAFileThatHasOne)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = 78;
    for (const std::string& content : {UpdateFiles::binaryFile(header), UpdateFiles::bitstreamFile(78),
                                       UpdateFiles::inventoryFile(Json::object(), 78),
                                       UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 78}})}) {
        applyOne(78, content);
        EXPECT_THAT(check(), IsEmpty());

        applyOne(77, content);
        EXPECT_THAT(check(), ElementsAre("error checksum /files/0/checksumCrc32"));
        EXPECT_THAT(messagesFound(),
                    ElementsAre("the stated checksum is 77, but the one in the file's header is 78: put the right file "
                                "in its place, or state that"));
    }
}

TEST_F(ContentRules, TakeEveryChecksumWhereTheHeaderHasNone)
{
    for (const std::string& content :
         {UpdateFiles::bitstreamFile(78, 88), UpdateFiles::inventoryFile(Json::object())}) {
        applyOne(77, content);
        EXPECT_THAT(check(), IsEmpty());
    }
}

TEST_F(ContentRules, DoNotCompareWhatTheLibraryHasTakenFromTheHeader)
{
    applyOne(nullptr, UpdateFiles::bitstreamFile(78));
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ContentRules, HoldTheStatedChecksumOfAFlashDriveFileAgainstItsBytesWhateverItsHeader)
{
    applyFlashFile(crc32OfDigits, "123456789");
    EXPECT_THAT(check(), IsEmpty());

    applyFlashFile(78, UpdateFiles::bitstreamFile(78));
    EXPECT_THAT(check(), ElementsAre("error checksum /files/1/checksumCrc32"));
}

TEST_F(ContentRules, WarnOfAFlashDriveFileWithTheChecksumOfItsHeader)
{
    applyFlashFile(nullptr, UpdateFiles::bitstreamFile(78));
    EXPECT_THAT(check(), ElementsAre("warning checksum /files/1/name"));
    EXPECT_THAT(messagesFound(),
                ElementsAre("the checksum in the file's header is 78, but the target computes the CRC-32 of a file on "
                            "the flash drive, 937345552, and will never agree: state \"checksumCrc32\": 937345552"));
}

TEST_F(ContentRules, DoNotWarnOfAFlashDriveFileWithoutAnyChecksum)
{
    applyFlashFile(nullptr, UpdateFiles::bitstreamFile(78, 88));
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ContentRules, FindAMissingFileAndSayNothingElseOfItsContent)
{
    missingFiles = {"one.bin"};
    applyOne(77, "");
    EXPECT_THAT(check(), ElementsAre("error missing-file /files/0/name"));
    EXPECT_THAT(messagesFound(), ElementsAre("the archive's folder has no such file: add it, or correct the name"));
}

TEST_F(ContentRules, TakeALinkToNothingForAMissingFile)
{
    missingFiles = {"one.bin"};
    applyOne(77, "");
    fs::create_symlink("nothing", file("one.bin"));
    EXPECT_THAT(check(), ElementsAre("error missing-file /files/0/name"));

    fs::remove(file("one.bin"));
    fs::create_symlink("one.bin", file("one.bin"));
    EXPECT_THAT(check(), ElementsAre("error missing-file /files/0/name"));
}

TEST_F(ContentRules, TakeAPathThroughAFileForAMissingFile)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("one.bin/two.bin", 1)};
    missingFiles = {"one.bin/two.bin"};
    ASSERT_EQ(apply(), 0u);
    archive->addFile("one.bin", "content");
    EXPECT_THAT(check(), ElementsAre("error missing-file /files/0/name"));
}

TEST_F(ContentRules, FindAFolderAndAPipeInThePlaceOfAFile)
{
    missingFiles = {"one.bin"};
    applyOne(77, "");
    fs::create_directory(file("one.bin"));
    EXPECT_THAT(check(), ElementsAre("error not-a-file /files/0/name"));
    EXPECT_THAT(messagesFound(),
                ElementsAre("this is no regular file that can be read: put the update file in its place"));

    fs::remove(file("one.bin"));
    ASSERT_EQ(::mkfifo(file("one.bin").c_str(), 0666), 0);
    EXPECT_THAT(check(), ElementsAre("error not-a-file /files/0/name"));
}

TEST_F(ContentRules, FindAFileThatCannotBeRead)
{
    applyOne(77, "content");
    makeUnreadable(archive->path(), "one.bin");
    const Unprivileged unprivileged;
    EXPECT_THAT(check(), ElementsAre("error not-a-file /files/0/name"));
}

TEST_F(ContentRules, FindAFileInAFolderThatCannotBeSearched)
{
    boards = {ioBoard({installed(1)})};
    entries = {ioEntry("sub/one.bin", 1)};
    ASSERT_EQ(apply(), 0u);
    makeUnreadable(archive->path(), "sub");
    {
        const Unprivileged unprivileged;
        EXPECT_THAT(check(), ElementsAre("error not-a-file /files/0/name"));
    }
    fs::permissions(file("sub"), fs::perms::owner_all);
}

TEST_F(ContentRules, FindAnEmptyFileAndSayNothingOfItsChecksum)
{
    applyOne(77, "");
    EXPECT_THAT(check(), ElementsAre("error empty-file /files/0/name"));
    EXPECT_THAT(messagesFound(), ElementsAre("the file has no content: put the whole update file in its place"));
}

TEST_F(ContentRules, FollowLinksToFiles)
{
    missingFiles = {"one.bin"};
    applyOne(crc32OfDigits, "");
    archive->addFile("real.bin", "123456789");
    fs::create_symlink("real.bin", file("one.bin"));
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ContentRules, LookOnlyAtWhatWillBeUsed)
{
    boards = {ioBoard({installed(1), installed(2), installed(3)})};
    entries = {ioEntry("excluded.bin", 1), ioEntry("current.bin", 2, {{"version", "1.0"}, {"checksumCrc32", 5}}),
               ioEntry("used.bin", 3), ioEntry("nobodys.bin", 4)};
    missingFiles = {"excluded.bin", "current.bin", "used.bin", "nobodys.bin"};
    ASSERT_EQ(apply(), 0u);
    updater->disableUpdateElement(0);
    EXPECT_THAT(check(), ElementsAre("error missing-file /files/2/name"));
}

TEST_F(ContentRules, LookAtNothingOnATargetThatIsNotSupported)
{
    boards = {hcnBoard({installed(1)}), ioBoard({installed(1)})};
    entries = {ioEntry("one.bin", 1)};
    missingFiles = {"one.bin"};
    ASSERT_EQ(apply(), 2u);
    EXPECT_THAT(check(), IsEmpty());
}

TEST_F(ContentRules, FindEveryFaultInTheOrderOfTheDescriptionAndForgetThoseOfAnEarlierCheck)
{
    boards = {ioBoard({installed(1), installed(2), installed(3)})};
    entries = {ioEntry("new.bin", 9, {{"featureLevel", 3}}), ioEntry("three.bin", 3), ioEntry("two.bin", 2),
               ioEntry("one.bin", 1)};
    missingFiles = {"one.bin", "two.bin"};
    contents["three.bin"] = "";
    ASSERT_EQ(apply(), 0u);
    EXPECT_THAT(check(), ElementsAre("error empty-file /files/1/name", "error missing-file /files/2/name",
                                     "error missing-file /files/3/name"));
    const ZoNTrellanInspector::ZoTFinding& finding = inspector->getFinding(1);
    EXPECT_EQ(finding.entry, 2);
    EXPECT_EQ(finding.board, -1);
    EXPECT_EQ(finding.name, "two.bin");
    EXPECT_THROW(inspector->getFinding(3), std::out_of_range);

    archive->addFile("two.bin", "123456789");
    EXPECT_THAT(check(), ElementsAre("error empty-file /files/1/name", "error checksum /files/2/checksumCrc32",
                                     "error missing-file /files/3/name"));
}

TEST_F(ContentRules, ReadAFileOnceThatSeveralEntriesName)
{
    boards = {ioBoard({installed(1), installed(2), installed(3)})};
    entries = {ioEntry("one.bin", 1, {{"checksumCrc32", crc32OfDigits}}),
               ioEntry("./one.bin", 2, {{"checksumCrc32", 77}}),
               ioEntry("link.bin", 3, {{"checksumCrc32", crc32OfDigits}})};
    contents = {{"one.bin", "123456789"}, {"./one.bin", "123456789"}};
    missingFiles = {"link.bin"};
    ASSERT_EQ(apply(), 0u);
    fs::create_symlink("one.bin", file("link.bin"));

    using Calls = std::vector<std::pair<std::uint64_t, std::uint64_t>>;
    Calls calls;
    inspector->checkUsedFiles([](void* context, std::uint64_t read,
                                 std::uint64_t all) { static_cast<Calls*>(context)->emplace_back(read, all); },
                              &calls);
    ASSERT_EQ(inspector->getFindingCount(), 1u);
    EXPECT_EQ(inspector->getFinding(0).pointer, "/files/1/checksumCrc32");
    EXPECT_THAT(calls, ElementsAre(std::pair(9u, 9u), std::pair(9u, 9u)));
}

TEST_F(ContentRules, TellTheirProgressUpToTheEnd)
{
    boards = {ioBoard({installed(1), installed(2)})};
    entries = {ioEntry("one.bin", 1), ioEntry("two.bin", 2)};
    contents = {{"one.bin", std::string(1'000'000, 'x')}, {"two.bin", UpdateFiles::bitstreamFile(6)}};
    ASSERT_EQ(apply(), 0u);

    std::vector<std::uint64_t> read;
    inspector->checkUsedFiles(
        [](void* context, std::uint64_t bytes, std::uint64_t all) {
            EXPECT_EQ(all, 1'000'092u);
            static_cast<std::vector<std::uint64_t>*>(context)->push_back(bytes);
        },
        &read);
    EXPECT_TRUE(std::is_sorted(read.begin(), read.end()));
    EXPECT_GE(read.size(), 4u);
    EXPECT_EQ(read.back(), 1'000'092u);
}

TEST_F(ContentRules, LetThroughWhatTheHostsProgressThrows)
{
    applyOne(77, "content");
    EXPECT_THROW(inspector->checkUsedFiles(
                     [](void*, std::uint64_t, std::uint64_t) { throw std::runtime_error("stop"); }, nullptr),
                 std::runtime_error);
    EXPECT_EQ(inspector->getFindingCount(), 0u);
}
