// Targets in /mnt, on a machine whose /mnt is empty: each test runs the tool with an empty file system there.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TempDir.h"

namespace {

constexpr const char* withDrive = R"({"clock": "virtual", "flashDrive": "flash", "tree": {"id": "ROOT"}})";
constexpr const char* refusal =
    " cannot be read: beside a flash drive a target must not lie directly in /mnt or /mnt/cn on this machine, move it "
    "to a folder of its own.\n";

// Writes `document` to /mnt/NAME with an empty folder "flash" beside it, scans that target, and gives what the tool
// prints to standard error.
std::string scanErrors(const std::string& name, const std::string& document, const std::string& prepare = ":")
{
    const TempDir folder;
    folder.write("target.json", document);
    const std::string script = "mount -t tmpfs tmpfs /mnt && " + prepare +
                               " && mkdir -p \"$(dirname \"$2\")/flash\" && cp target.json \"$2\" && "
                               "exec \"$1\" scan --target \"$2\" >output";
    return runProcess("/usr/bin/unshare",
                      {"--map-root-user", "--mount", "sh", "-c", script, "sh", TRELLAN_TOOL, "/mnt/" + name},
                      folder.path())
        .errors;
}

class TargetInMnt : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_USER_NAMESPACE(); }
};

}  // namespace

TEST_F(TargetInMnt, IsRefusedWhereTheFlashDrivesPlaceHasToBeMade)
{
    EXPECT_EQ(scanErrors("target.json", withDrive),
              std::string("ERROR 0x26300007: The target file /mnt/target.json") + refusal);
    EXPECT_EQ(scanErrors("cn/target.json", withDrive),
              std::string("ERROR 0x26300007: The target file /mnt/cn/target.json") + refusal);
}

TEST_F(TargetInMnt, IsRefusedBehindASymbolicLink)
{
    EXPECT_EQ(scanErrors("link.json", withDrive,
                         "mkdir /mnt/cn && : >/mnt/cn/target.json && ln -s cn/target.json /mnt/link.json"),
              std::string("ERROR 0x26300007: The target file /mnt/link.json") + refusal);
}

TEST_F(TargetInMnt, IsAcceptedInAFolderOfItsOwn)
{
    EXPECT_EQ(scanErrors("device/target.json", withDrive), "");
    EXPECT_EQ(scanErrors("cn/device/target.json", withDrive), "");
}

TEST_F(TargetInMnt, IsAcceptedWithoutAFlashDrive)
{
    EXPECT_EQ(scanErrors("target.json", R"({"clock": "virtual", "tree": {"id": "ROOT"}})"), "");
}

TEST_F(TargetInMnt, IsAcceptedWhereTheMachineHasThePlace)
{
    EXPECT_EQ(scanErrors("target.json", withDrive, "mkdir -p /mnt/cn/cfdrive"), "");
}

TEST(TraceInMnt, ReachesItsFileAlthoughTheFlashDriveCoversIt)
{
    SKIP_WITHOUT_USER_NAMESPACE();
    const TempDir folder;
    std::filesystem::create_directory(folder.path() / "flash");
    folder.write("target.json", withDrive);
    const std::string script =
        "mount -t tmpfs tmpfs /mnt && \"$1\" scan --target target.json --trace /mnt/trace.jsonl >output && "
        "cat /mnt/trace.jsonl";
    const ProcessResult run = runProcess(
        "/usr/bin/unshare", {"--map-root-user", "--mount", "sh", "-c", script, "sh", TRELLAN_TOOL}, folder.path());
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.output,
              "{\"call\":\"scan\",\"argument\":true,\"result\":0}\n"
              "{\"call\":\"deleteInventoryTree\"}\n"
              "{\"call\":\"unregisterMessages\",\"code\":642777088}\n");
}
