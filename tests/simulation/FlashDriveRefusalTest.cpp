// Where a flash drive cannot be mounted, and in a chroot, where it can. Each test runs in a process of its own, which
// may change what it is allowed to do.
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <future>
#include <iostream>
#include <thread>

#include "Device.h"
#include "FlashTarget.h"
#include "OwnMnt.h"
#include "UserNamespace.h"
#include "support/AnotherProcess.h"
#include "support/TempDir.h"

namespace fs = std::filesystem;

namespace {

// Prints what the scan reports, without the target file's name.
int tellScan()
{
    const Scan scan;
    for (unsigned index = 0; index < scan.errors.count(); ++index) {
        const std::string text = scan.errors.text(index);
        std::cerr << std::hex << scan.errors.code(index) << " ..." << text.substr(text.find(" cannot be read")) << '\n';
    }
    return scan.result;
}

// From now on this process is a user who is not root, and may read the folder of `device`.
void becomeUser(const FlashTarget& device)
{
    constexpr uid_t nobody = 65534;
    fs::permissions(device.target.folder(), fs::perms::all);
    if (::geteuid() == 0 && (::setresgid(nobody, nobody, nobody) != 0 || ::setresuid(nobody, nobody, nobody) != 0)) {
        std::_Exit(100);
    }
    ::prctl(PR_SET_DUMPABLE, 1);  // without it the files in /proc/self stay root's
}

void dropCapabilities()
{
    __user_cap_header_struct header = {_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[_LINUX_CAPABILITY_U32S_3] = {};
    if (::syscall(SYS_capset, &header, none) != 0) {
        std::_Exit(100);
    }
}

class FlashDriveRefusal : public FlashDrive {
protected:
    FlashDriveRefusal() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

}  // namespace

TEST_F(FlashDriveRefusal, SaysWhatIsNeededWhereNamespacesAreUsedUp)
{
    SKIP_WITHOUT_USER_NAMESPACE();
    EXPECT_EXIT(
        std::_Exit([] {
            const FlashTarget device;
            enterUserNamespace();
            writeText("/proc/sys/user/max_mnt_namespaces", "0");  // within this user namespace
            return tellScan();
        }()),
        testing::ExitedWithCode(1),
        "\n26300007 ... cannot be read: its flash drive cannot be mounted, as there are too many namespaces: raise "
        "max_mnt_namespaces in /proc/sys/user, or leave flashDrive out\\.\n$");
}

TEST_F(FlashDriveRefusal, SaysWhatAUserNeedsWhereNamespacesAreUsedUp)
{
    SKIP_WITHOUT_USER_NAMESPACE();
    EXPECT_EXIT(
        std::_Exit([] {
            const FlashTarget device;
            enterUserNamespace();
            writeText("/proc/sys/user/max_user_namespaces", "0");
            dropCapabilities();
            return tellScan();
        }()),
        testing::ExitedWithCode(1),
        "\n26300007 ... cannot be read: its flash drive cannot be mounted, as there are too many namespaces: raise "
        "max_user_namespaces and max_mnt_namespaces in /proc/sys/user, or leave flashDrive out\\.\n$");
}

TEST_F(FlashDriveRefusal, SaysThatAUsersProcessMustScanBeforeItHasSeveralThreads)
{
    SKIP_WITHOUT_USER_NAMESPACE();
    EXPECT_EXIT(
        std::_Exit([] {
            const FlashTarget device;
            return inAnotherProcess([&] {
                std::promise<void> end;
                std::thread other([&] { end.get_future().wait(); });
                becomeUser(device);
                const int result = tellScan();
                end.set_value();
                other.join();
                return result;
            });
        }()),
        testing::ExitedWithCode(1),
        "\n26300007 ... cannot be read: its flash drive cannot be mounted by a user whose process has several threads: "
        "scan before the others start, or be root, or leave flashDrive out\\.\n$");
}

TEST_F(FlashDriveRefusal, LeavesMntAsItWas)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "there is no folder of another user's below /mnt";
    }
    SKIP_WITHOUT_USER_NAMESPACE();
    EXPECT_EXIT(
        std::_Exit([] {
            makeOwnMnt();
            fs::create_directory("/mnt/folder");
            writeText("/mnt/folder/file", "readable");
            fs::permissions("/mnt", fs::perms::others_exec);  // its names cannot be read
            const FlashTarget device;
            return inAnotherProcess([&] {
                becomeUser(device);
                tellScan();
                tellScan();
                std::cerr << readText("/mnt/folder/file");
                return 0;
            });
        }()),
        testing::ExitedWithCode(0),
        "(ERROR [^\n]*\n26300007 ... cannot be read: its flash drive cannot be mounted \\(list a folder below /mnt: "
        "Permission denied\\): be root or allow user namespaces, or leave flashDrive out\\.\n){2}readable$");
}

TEST_F(FlashDriveRefusal, ChangesNothingForADriveThatIsNotThere)
{
    EXPECT_EXIT(std::_Exit([] {
                    const FlashTarget device;
                    fs::remove(device.flash());
                    const fs::path before = fs::read_symlink("/proc/thread-self/ns/mnt");
                    const Scan scan;
                    return scan.result == 1 && fs::read_symlink("/proc/thread-self/ns/mnt") == before ? 0 : 1;
                }()),
                testing::ExitedWithCode(0), "");
}

namespace {

// A folder with what a process needs as its root, a target and, in its mnt, the file folder/file. It is no mount point;
// the mount that holds it passes on what is mounted there, as on most machines.
class Root {
public:
    Root()
    {
        if (::unshare(CLONE_NEWNS) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
            throw std::runtime_error("no mount namespace");
        }
        mountMemory(place.path().c_str());
        ::mount(nullptr, place.path().c_str(), nullptr, MS_SHARED, nullptr);
        place.write("root/mnt/folder/file", "visible");
        place.write("root/device/flash/file", "the drive's");
        place.write("root/device/target.json", flashDocument().dump());
        fs::create_directory(path() / "proc");
        ::mount("proc", (path() / "proc").c_str(), "proc", 0, nullptr);
    }
    ~Root() { ::umount2(place.path().c_str(), MNT_DETACH); }

    fs::path path() const { return place.path() / "root"; }

    // What `action` returns in a process that has this root, with the target in its working directory.
    template <class Action>
    int within(Action action) const
    {
        return inAnotherProcess([&] {
            if (::chroot(path().c_str()) != 0) {
                return 100;
            }
            fs::current_path("/device");
            ::setenv("TRELLAN_TARGET", "/device/target.json", 1);
            return action();
        });
    }

private:
    TempDir place;
};

class Chroot : public FlashDriveRefusal {
protected:
    void SetUp() override
    {
        if (::geteuid() != 0) {
            GTEST_SKIP() << "only root can change the root";
        }
        FlashDriveRefusal::SetUp();
    }
};

}  // namespace

TEST_F(Chroot, HasAFlashDriveOfItsOwn)
{
    EXPECT_EXIT(std::_Exit([] {
                    const Root root;
                    const int result = root.within([&] {
                        const int scanned = tellScan();
                        std::cerr << readText("/mnt/cn/cfdrive/file") << ", " << readText("/mnt/folder/file") << ", "
                                  << readText("flash/file") << ", " << fs::exists(root.path());
                        return scanned;
                    });
                    return fs::exists(root.path() / "mnt/cn") ? 101 : result;
                }()),
                testing::ExitedWithCode(0), "^the drive's, visible, the drive's, 0$");
}

TEST_F(Chroot, SaysThatProcIsNeeded)
{
    EXPECT_EXIT(std::_Exit([] {
                    return Root().within([] {
                        ::umount2("/proc", MNT_DETACH);
                        return tellScan();
                    });
                }()),
                testing::ExitedWithCode(1),
                "\n26300007 ... cannot be read: its flash drive cannot be mounted without /proc: mount that, or leave "
                "flashDrive out\\.\n$");
}

TEST_F(Chroot, SaysThatMntIsNeeded)
{
    EXPECT_EXIT(
        std::_Exit([] {
            const Root root;
            fs::remove_all(root.path() / "mnt");
            return root.within(tellScan);
        }()),
        testing::ExitedWithCode(1),
        "\n26300007 ... cannot be read: its flash drive cannot be mounted without a folder /mnt \\(No such file or "
        "directory\\): make it, or leave flashDrive out\\.\n$");
}
