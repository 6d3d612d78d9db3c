// The flash drive beside what else there is below /mnt.
#include <gtest/gtest.h>

#include <fstream>
#include <iostream>

#include "Device.h"
#include "FlashTarget.h"
#include "OwnMnt.h"
#include "support/BuildTree.h"
#include "support/Process.h"

namespace fs = std::filesystem;

// The machine has no /mnt/cn/cfdrive, so that its place has to be made.
TEST_F(FlashDrive, LeavesTheRestBelowMntVisible)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");  // a process whose /mnt nobody else sees
    EXPECT_EXIT(std::_Exit([] {
                    makeOwnMnt();
                    fs::create_directories("/mnt/folder/disk");
                    fs::create_directory("/mnt/disk");
                    fs::create_directories("/mnt/cn/folder");
                    mountMemory("/mnt/disk");
                    mountMemory("/mnt/folder/disk");
                    writeText("/mnt/file", "file, ");
                    writeText("/mnt/folder/file", "in a folder, ");
                    writeText("/mnt/disk/file", "in a mount, ");
                    writeText("/mnt/folder/disk/file", "in a mount in a folder, ");
                    writeText("/mnt/cn/file", "in cn, ");
                    writeText("/mnt/cn/folder/file", "in a folder in cn, ");
                    fs::create_symlink("folder/file", "/mnt/link");
                    const FlashTarget device;
                    writeText(device.flash() / "file", "on the drive");
                    const Scan scan;
                    std::cerr << readText("/mnt/file") << readText("/mnt/folder/file") << readText("/mnt/disk/file")
                              << readText("/mnt/folder/disk/file") << readText("/mnt/cn/file")
                              << readText("/mnt/cn/folder/file") << readText("/mnt/link")
                              << readText(flashPath / "file");
                    return scan.result;
                }()),
                testing::ExitedWithCode(0),
                "^file, in a folder, in a mount, in a mount in a folder, in cn, in a folder in cn, in a folder, on the "
                "drive$");
}

TEST_F(FlashDrive, PassesOnWhatIsWrittenToTheRestBelowMnt)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::_Exit([] {
                    makeOwnMnt();
                    fs::create_directory("/mnt/folder");
                    writeText("/mnt/folder/file", "old");
                    fs::current_path("/mnt/folder");  // stays what it is when /mnt is covered
                    const FlashTarget device;
                    const Scan scan;
                    writeText("/mnt/folder/file", "new");
                    std::cerr << readText("file");
                    return scan.result;
                }()),
                testing::ExitedWithCode(0), "^new$");
}

TEST_F(FlashDrive, LeavesNoPlaceForTargetsDirectlyInMntWhereItIsPrivate)
{
    if (fs::exists(flashPath)) {
        GTEST_SKIP() << "this machine has " << flashPath;
    }
    const FlashTarget device;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    std::ofstream("/mnt/target.json") << R"({"tree": {"id": "ROOT"}})";  // nobody else sees it
    ::setenv("TRELLAN_TARGET", "/mnt/target.json", 1);
    testing::internal::CaptureStderr();
    const Scan refused;
    testing::internal::GetCapturedStderr();
    ASSERT_EQ(refused.errors.count(), 1U);
    EXPECT_EQ(refused.errors.text(0),
              "The target file /mnt/target.json cannot be read: beside a flash drive a target must not lie directly in "
              "/mnt or /mnt/cn on this machine, move it to a folder of its own.");
    fs::remove("/mnt/target.json");
}

// As when the library is unloaded and loaded again: a new process knows nothing, but is in the same namespace.
TEST_F(FlashDrive, LeavesNoPlaceForTargetsDirectlyInMntToWhoeverComesAfter)
{
    if (fs::exists(flashPath)) {
        GTEST_SKIP() << "this machine has " << flashPath;
    }
    const FlashTarget device;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    fs::create_directory("/mnt/flash");
    for (const char* text : {R"({"tree": {"id": "ROOT"}})", R"({"flashDrive": "flash", "tree": {"id": "ROOT"}})"}) {
        std::ofstream("/mnt/target.json") << text;
        EXPECT_EQ(
            runProcess(TRELLAN_TOOL, {"scan", "--target", "/mnt/target.json"}, device.flash()).errors,
            "ERROR 0x26300007: The target file /mnt/target.json cannot be read: beside a flash drive a target must "
            "not lie directly in /mnt or /mnt/cn on this machine, move it to a folder of its own.\n")
            << text;
    }
    fs::remove("/mnt/target.json");
    fs::remove("/mnt/flash");
}

TEST_F(FlashDrive, TakesThePlaceOfOneWhoseFolderIsGoneForWhoeverComesAfter)
{
    {
        const FlashTarget device;
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    }
    const FlashTarget next({"/mnt/cn/cfdrive/file"});
    writeText(next.flash() / "file", "content");
    const ProcessResult result =
        runProcess(TRELLAN_TOOL, {"scan", "--target", next.target.path()}, next.target.folder());
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}
