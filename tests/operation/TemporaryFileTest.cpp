// The temporary file beside a target: what is done with something that is there already, and with what a failed copy
// has left.
#include <fcntl.h>
#include <linux/capability.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <system_error>

#include "operation/FlashDriveFixture.h"
#include "support/FileSizeLimit.h"
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

// For the time of a scope this process heeds the modes of files, as root too. Its children do as they ever do.
class WithoutRootsRights {
public:
    WithoutRootsRights()
    {
        call(SYS_capget, all);
        auto fewer = all;
        fewer[0].effective = fewer[1].effective = 0;
        call(SYS_capset, fewer);
    }
    ~WithoutRootsRights() { call(SYS_capset, all); }
    WithoutRootsRights(const WithoutRootsRights&) = delete;
    WithoutRootsRights& operator=(const WithoutRootsRights&) = delete;

private:
    using Capabilities = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

    static void call(long number, Capabilities& capabilities)
    {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        EXPECT_EQ(::syscall(number, &header, capabilities.data()), 0);
    }

    Capabilities all{};
};

// Leaves a socket at `path`.
void makeSocket(const fs::path& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.string().size(), sizeof address.sun_path);
    path.string().copy(address.sun_path, sizeof address.sun_path - 1);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ::close(descriptor);
}

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

TEST_F(FlashDriveTemporary, IsRefusedInThePlaceOfASocket)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    makeSocket(drive() / "c.bin.tmp");

    expectCannotWrite("c.bin", 22);

    EXPECT_EQ(readText(drive() / "c.bin"), "old");
    EXPECT_TRUE(fs::is_socket(drive() / "c.bin.tmp"));
}

TEST_F(FlashDriveTemporary, IsRefusedInThePlaceOfADevice)
{
    prepareDrive();
    put(drive() / "c.bin", "old");
    constexpr unsigned memoryDevices = 1;
    if (::mknod((drive() / "c.bin.tmp").c_str(), S_IFCHR | 0666, makedev(memoryDevices, 3)) != 0) {
        GTEST_SKIP() << "no device can be made here: " << std::generic_category().message(errno);
    }

    expectCannotWrite("c.bin", 22);

    EXPECT_EQ(readText(drive() / "c.bin"), "old");
    EXPECT_TRUE(fs::is_character_file(drive() / "c.bin.tmp"));
}

TEST_F(FlashDriveTemporary, IsRemovedWhenTheDriveIsFull)
{
    prepareDrive();
    const std::string full = "/mnt/cn/cfdrive/full";
    fs::create_directory(full);
    if (::mount("none", full.c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "no small drive can be made here: " << std::generic_category().message(errno);
    }
    put(full + "/c.bin", "old");
    archive->addFile("big.bin", std::string(200000, 'x'));

    EXPECT_FALSE(write("big.bin", "full/c.bin"));

    EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/full/c.bin.tmp. Error code: 256\n"));
    EXPECT_THAT(below(full), ElementsAre("c.bin"));
    EXPECT_EQ(readText(full + "/c.bin"), "old");
    EXPECT_TRUE(write("c.bin", "full/c.bin"));
    EXPECT_EQ(readText(full + "/c.bin"), "content of c");
    ::umount2(full.c_str(), MNT_DETACH);
}

TEST_F(FlashDriveTemporary, IsNotMadeFromAPipeASocketOrADevice)
{
    prepareDrive();
    ASSERT_EQ(::mkfifo(inArchive("pipe.bin").c_str(), 0666), 0);
    makeSocket(inArchive("socket.bin"));
    fs::create_symlink(inArchive("pipe.bin"), inArchive("pipe-link.bin"));
    fs::create_symlink("/dev/null", inArchive("device.bin"));

    for (const std::string name : {"pipe.bin", "pipe-link.bin", "socket.bin", "device.bin"}) {
        EXPECT_FALSE(write(name, "a/c.bin")) << name;

        EXPECT_THAT(messages, ElementsAre("ERROR: Cannot write /mnt/cn/cfdrive/a/c.bin.tmp. Error code: 22\n"));
        EXPECT_THAT(onDrive(), IsEmpty()) << name;
    }
}

TEST_F(FlashDriveTemporary, IsWrittenIntoAFolderThatCannotBeRead)
{
    prepareDrive();
    fs::create_directory(drive() / "a");
    fs::permissions(drive() / "a", fs::perms::owner_write | fs::perms::owner_exec);
    {
        const WithoutRootsRights rights;
        std::error_code error;
        fs::directory_iterator(drive() / "a", error);
        ASSERT_EQ(error.value(), EACCES);
        EXPECT_TRUE(write("c.bin", "a/c.bin"));
    }
    fs::permissions(drive() / "a", fs::perms::owner_all);

    EXPECT_THAT(messages, IsEmpty());
    EXPECT_THAT(onDrive(), ElementsAre("a/", "a/c.bin"));
    EXPECT_EQ(readText(drive() / "a/c.bin"), "content of c");
}

TEST_F(FlashDriveTemporary, IsMadeFromTheFileThatALinkInTheArchiveLeadsTo)
{
    prepareDrive();
    fs::create_symlink(inArchive("c.bin"), inArchive("link.bin"));

    EXPECT_TRUE(write("link.bin", "c.bin"));

    EXPECT_EQ(readText(drive() / "c.bin"), "content of c");
    EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(drive() / "c.bin")));
}
