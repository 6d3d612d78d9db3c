// The temporary file beside a target: what is done with something that is there already, and with what a failed copy
// has left.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

#include "operation/FlashDriveFixture.h"
#include "support/TempDir.h"

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace fs = std::filesystem;

namespace {

// A file that is open for writing, as a copy holds it that has outlived its update.
class OpenCopy {
public:
    explicit OpenCopy(const fs::path& path) : descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666)) {}
    ~OpenCopy() { ::close(descriptor); }
    OpenCopy(const OpenCopy&) = delete;
    OpenCopy& operator=(const OpenCopy&) = delete;

    void write(const std::string& text) const
    {
        EXPECT_EQ(::write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }

private:
    int descriptor;
};

// For the time of a scope no file of this process and its children can grow beyond `bytes`: a copy fails halfway.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : disposition(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, disposition);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*disposition)(int);
    rlimit before{};
};

}  // namespace

class FlashDriveTemporary : public FlashDriveFixture {
protected:
    // Writes "c.bin" to `location`; expects this error number for its temporary file, and nothing flushed.
    void expectCannotWrite(const std::string& location, unsigned error)
    {
        EXPECT_FALSE(write("c.bin", location));
        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/" + location +
                                          ".tmp. Error code: " + std::to_string(error) + "\n"));
        EXPECT_THAT(trace(), IsEmpty());
    }

    fs::path inArchive(const std::string& name) const { return fs::path(archive->path()) / name; }
};

TEST_F(FlashDriveTemporary, IsAlwaysANewOne)
{
    prepareDrive();
    const OpenCopy copy(drive() / "c.bin.tmp");
    copy.write("begun");

    EXPECT_TRUE(write("c.bin", "c.bin"));
    copy.write(" and ended late");

    EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
}

TEST_F(FlashDriveTemporary, IsRefusedInThePlaceOfAFolder)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    fs::create_directory(drive() / "c.bin.tmp");

    expectCannotWrite("c.bin", 21);

    EXPECT_EQ(readText(drive() / "c.bin"), "old");
    EXPECT_THAT(onDrive(), ElementsAre("c.bin", "c.bin.tmp/"));
}

TEST_F(FlashDriveTemporary, IsRefusedInThePlaceOfAPipe)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    ASSERT_EQ(::mkfifo((drive() / "c.bin.tmp").c_str(), 0666), 0);

    expectCannotWrite("c.bin", 22);

    EXPECT_EQ(readText(drive() / "c.bin"), "old");
    EXPECT_TRUE(fs::is_fifo(drive() / "c.bin.tmp"));
}

TEST_F(FlashDriveTemporary, TakesThePlaceOfALinkWithoutFollowingIt)
{
    prepareDrive();
    const TempDir outside;
    put(outside.path() / "precious.txt", "precious");
    put(outside.path() / "folder/inside.txt", "inside");
    for (const fs::path& to :
         {outside.path() / "precious.txt", outside.path() / "folder", outside.path() / "nothing"}) {
        fs::create_symlink(to, drive() / "c.bin.tmp");

        EXPECT_TRUE(write("c.bin", "c.bin")) << to;

        EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
        EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(drive() / "c.bin")));
        EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
    }
    EXPECT_THAT(below(outside.path()), ElementsAre("folder/", "folder/inside.txt", "precious.txt"));
    EXPECT_EQ(readText(outside.path() / "precious.txt"), "precious");
}

TEST_F(FlashDriveTemporary, ReplacesALinkInThePlaceOfTheTargetWithoutFollowingIt)
{
    prepareDrive();
    const TempDir outside;
    put(outside.path() / "precious.txt", "precious");
    fs::create_symlink(outside.path() / "precious.txt", drive() / "c.bin");

    EXPECT_TRUE(write("c.bin", "c.bin"));

    EXPECT_EQ(readText(outside.path() / "precious.txt"), "precious");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(drive() / "c.bin")));
}

TEST_F(FlashDriveTemporary, IsRemovedWhenTheCopyFails)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    archive->addFile("big.bin", std::string(200000, 'x'));
    {
        const FileSizeLimit limit(100000);
        EXPECT_FALSE(write("big.bin", "c.bin"));
    }

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/c.bin.tmp. Error code: 256\n"));
    EXPECT_THAT(onDrive(), ElementsAre("c.bin"));
    EXPECT_EQ(readText(drive() / "c.bin"), "old");
}

TEST_F(FlashDriveTemporary, IsNotMadeFromAPipeOrADevice)
{
    prepareDrive();
    ASSERT_EQ(::mkfifo(inArchive("pipe.bin").c_str(), 0666), 0);
    fs::create_symlink(inArchive("pipe.bin"), inArchive("pipe-link.bin"));
    fs::create_symlink("/dev/null", inArchive("device.bin"));

    for (const std::string name : {"pipe.bin", "pipe-link.bin", "device.bin"}) {
        EXPECT_FALSE(write(name, "a/c.bin")) << name;

        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/a/c.bin.tmp. Error code: 22\n"));
        EXPECT_THAT(onDrive(), IsEmpty()) << name;
    }
}

TEST_F(FlashDriveTemporary, IsMadeFromTheFileThatALinkInTheArchiveLeadsTo)
{
    prepareDrive();
    fs::create_symlink(inArchive("c.bin"), inArchive("link.bin"));

    EXPECT_TRUE(write("link.bin", "c.bin"));

    EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(drive() / "c.bin")));
}
