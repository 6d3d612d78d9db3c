// How often an update file without a stated checksum is opened, and the system asked about it, while an archive is
// read. This program's functions stand before those of the system and count their calls for files of the archive.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <array>
#include <cstdio>
#include <string>

#include "ArchiveReader.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;

namespace {

struct Calls {
    unsigned openings = 0;
    unsigned questions = 0;  // of what there is at the path
};

Calls calls;

bool isUpdateFile(const char* path)
{
    return std::string(path).ends_with(".counted");
}

template <class Function>
Function* systems(const char* name)
{
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

// COUNTED(RESULT, NAME, (PARAMETERS), (ARGUMENTS), MEMBER): of Calls.
#define COUNTED(result, name, parameters, arguments, member)                        \
    extern "C" result counted_##name parameters asm(#name);                         \
    extern "C" result counted_##name parameters                                     \
    {                                                                               \
        static result(*const usual) parameters = systems<result parameters>(#name); \
        calls.member += isUpdateFile(path) ? 1 : 0;                                 \
        return usual arguments;                                                     \
    }

COUNTED(std::FILE*, fopen, (const char* path, const char* mode), (path, mode), openings)
COUNTED(std::FILE*, fopen64, (const char* path, const char* mode), (path, mode), openings)
COUNTED(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), openings)
COUNTED(int, open64, (const char* path, int flags, mode_t mode), (path, flags, mode), openings)
COUNTED(int, access, (const char* path, int mode), (path, mode), questions)
COUNTED(int, stat, (const char* path, struct stat* status), (path, status), questions)
COUNTED(int, stat64, (const char* path, struct stat* status), (path, status), questions)
COUNTED(int, lstat, (const char* path, struct stat* status), (path, status), questions)
COUNTED(int, lstat64, (const char* path, struct stat* status), (path, status), questions)
COUNTED(int, fstatat, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags), questions)
COUNTED(int, fstatat64, (int at, const char* path, struct stat* status, int flags), (at, path, status, flags),
        questions)

namespace {

// The calls while an archive with three update files like this one is read, none of whose checksums is stated.
Calls callsFor(const std::string& content)
{
    constexpr std::array names{"1.counted", "2.counted", "3.counted"};
    std::vector<ordered_json> entries;
    for (const char* const name : names) {
        entries.push_back(without(fileEntry(name), "checksumCrc32"));
    }
    TestArchive archive(description(entries));
    for (const char* const name : names) {
        archive.addFile(name, content);
    }
    ArchiveReader reader(archive);
    calls = {};
    EXPECT_TRUE(reader.read()) << reader.text();
    for (std::size_t i = 0; i < names.size(); ++i) {
        EXPECT_EQ(reader.file(i).checksumCrc32, 7u);
    }
    return calls;
}

}  // namespace

TEST(OpenedFiles, AreOpenedAndAskedForOnceWhereTheyHaveABinaryHeader)
{
    UpdateFiles::BinaryHeader header;
    header.checksum = 7;
    const Calls made = callsFor(UpdateFiles::binaryFile(header));
    EXPECT_EQ(made.openings, 3u);
    EXPECT_EQ(made.questions, 3u);
}

TEST(OpenedFiles, AreOpenedAndAskedForOnceWhereTheyAreBitstreams)
{
    const Calls made = callsFor(UpdateFiles::bitstreamFile(7));
    EXPECT_EQ(made.openings, 3u);
    EXPECT_EQ(made.questions, 3u);
}

// The platform reads the tree from a path, so it opens the file once more.
TEST(OpenedFiles, AreOpenedTwiceAndAskedForOnceWhereTheyCarryAnInventoryTree)
{
    const Calls made = callsFor(UpdateFiles::inventoryFile({{"FIRMWARE/CHECKSUM_CRC32", 7}}));
    EXPECT_EQ(made.openings, 6u);
    EXPECT_EQ(made.questions, 3u);
}
