#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "Device.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"

using namespace ZoNInventoryIDs;
using nlohmann::ordered_json;
namespace fs = std::filesystem;

namespace {

const fs::path drive = "/mnt/cn/cfdrive";

// A target whose flash drive is the folder "flash" beside it, with file elements at `locations`.
ordered_json document(const std::vector<std::string>& locations)
{
    std::vector<ordered_json> elements;
    for (const std::string& location : locations) {
        ordered_json parameters = {{"LOCATION", location}, {"VALID", 0}};
        elements.push_back(fileElement(static_cast<unsigned>(elements.size()) + 1, parameters));
    }
    ordered_json whole = target({board("CN", {}, elements)});
    whole["flashDrive"] = "flash";
    return whole;
}

// Such a target, its flash drive still empty.
class FlashTarget {
public:
    explicit FlashTarget(const std::vector<std::string>& locations = {}) : target(document(locations))
    {
        fs::create_directory(flash());
    }

    fs::path flash() const { return target.folder() / "flash"; }

    SimulatedTarget target;
};

class FlashDrive : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }
};

std::set<std::string> namesIn(const fs::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.insert(entry.path().filename());
    }
    return names;
}

}  // namespace

TEST_F(FlashDrive, IsTheFolderBesideTheTargetFile)
{
    const FlashTarget device;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    std::ofstream(drive / "a.txt") << "written";
    EXPECT_EQ(namesIn(device.flash()), (std::set<std::string>{"a.txt"}));
}

TEST_F(FlashDrive, LeavesTheRestBelowMntVisible)
{
    std::set<std::string> expected = namesIn("/mnt");
    expected.insert("cn");
    const FlashTarget device;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    EXPECT_EQ(namesIn("/mnt"), expected);
    for (const std::string& name : expected) {
        EXPECT_FALSE(namesIn("/mnt/cn").empty());
        EXPECT_TRUE(fs::exists(fs::symlink_status("/mnt/" + name)));
    }
}

TEST_F(FlashDrive, BelongsToTheTargetOfTheLastScan)
{
    const FlashTarget first;
    std::ofstream(first.flash() / "first") << "1";
    {
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
        EXPECT_EQ(namesIn(drive), (std::set<std::string>{"first"}));
    }
    const FlashTarget second;
    std::ofstream(second.flash() / "second") << "2";
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    EXPECT_EQ(namesIn(drive), (std::set<std::string>{"second"}));
    const Scan again;
    EXPECT_EQ(namesIn(drive), (std::set<std::string>{"second"}));
}

TEST_F(FlashDrive, KeepsRelativePathsGood)
{
    const FlashTarget device;
    const fs::path before = fs::current_path();
    fs::current_path(device.target.folder());
    ::setenv("TRELLAN_TARGET", "target.json", 1);
    const Scan scan;
    EXPECT_EQ(scan.result, 0);
    EXPECT_EQ(fs::current_path(), device.target.folder());
    std::ofstream("flash/b.txt") << "written";
    EXPECT_TRUE(fs::exists(drive / "b.txt"));
    fs::current_path(before);
}

TEST_F(FlashDrive, MustExist)
{
    const FlashTarget device;
    fs::remove(device.flash());
    testing::internal::CaptureStderr();
    const Scan scan;
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_NE(scan.result, 0);
    EXPECT_EQ(scan.tree, nullptr);
    ASSERT_EQ(scan.errors.count(), 1U);
    EXPECT_EQ(scan.errors.code(0), 0x26300007U);
    const std::string text = "The target file " + device.target.path().string() + " cannot be read: flash drive " +
                             device.flash().string() + ": No such file or directory.";
    EXPECT_EQ(scan.errors.text(0), text);
    EXPECT_EQ(printed, "ERROR 0x26300007: " + text + "\n");
}

TEST_F(FlashDrive, MustBeAFolder)
{
    const FlashTarget device;
    fs::remove(device.flash());
    std::ofstream(device.flash()) << "file";
    testing::internal::CaptureStderr();
    const Scan scan;
    testing::internal::GetCapturedStderr();
    ASSERT_EQ(scan.errors.count(), 1U);
    EXPECT_EQ(scan.errors.text(0), "The target file " + device.target.path().string() +
                                       " cannot be read: flash drive " + device.flash().string() +
                                       ": Not a directory.");
}

TEST_F(FlashDrive, MakesElementsValidWhoseFileIsThere)
{
    const FlashTarget device({"etc/digits.txt", "missing.txt", "etc", ""});
    fs::create_directory(device.flash() / "etc");
    std::ofstream(device.flash() / "etc" / "digits.txt") << "123456789";
    const ordered_json before = device.target.document();
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    ErrorPool errors;
    const ZoCInventoryItem& info = scan.item(CN / UPDATE_INFO);
    const ZoCInventoryItem& present = *info.getItem(FILESYSTEM_ELEMENT);
    EXPECT_EQ(present.getValue<unsigned char>(errors, VALID), 1);
    EXPECT_EQ(present.getValue<unsigned>(errors, CHECKSUM_CRC32), 0xCBF43926U);
    for (unsigned index = 2; index <= 4; ++index) {
        const ZoCInventoryItem& absent = *info.getItem(FILESYSTEM_ELEMENT[index]);
        EXPECT_EQ(absent.getValue<unsigned char>(errors, VALID), 0);
        EXPECT_EQ(absent.getParameter(CHECKSUM_CRC32), nullptr);
    }
    EXPECT_EQ(errors.count(), 0U);
    EXPECT_EQ(device.target.document(), before);
}

TEST_F(FlashDrive, HasNoFileWhoseNameHoldsANul)
{
    const FlashTarget device({std::string("digits.txt\0junk", 15)});
    std::ofstream(device.flash() / "digits.txt") << "123456789";
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    ErrorPool errors;
    const ZoCInventoryItem& element = scan.item(CN / UPDATE_INFO / FILESYSTEM_ELEMENT);
    EXPECT_EQ(element.getValue<unsigned char>(errors, VALID), 0);
    EXPECT_EQ(element.getParameter(CHECKSUM_CRC32), nullptr);
}

TEST_F(FlashDrive, IsGoneForATargetWithoutOne)
{
    const FlashTarget first;
    std::ofstream(first.flash() / "a.txt") << "1";
    {
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
        EXPECT_TRUE(fs::exists(drive / "a.txt"));
    }
    {
        const SimulatedTarget device(target({}));
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
        EXPECT_FALSE(fs::exists(drive / "a.txt"));
    }
    const FlashTarget next;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    std::ofstream(drive / "b.txt") << "2";
    EXPECT_EQ(namesIn(next.flash()), (std::set<std::string>{"b.txt"}));
}

TEST_F(FlashDrive, LeavesNoPlaceForTargetsDirectlyInMntWhereItIsPrivate)
{
    if (fs::exists(drive)) {
        GTEST_SKIP() << "this machine has " << drive;
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
    if (fs::exists(drive)) {
        GTEST_SKIP() << "this machine has " << drive;
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

TEST_F(FlashDrive, HasANameThatIsAPath)
{
    for (const auto& [name, reason] :
         {std::pair<std::string, std::string>{"", "empty"}, {std::string("flash\0y", 7), "holds a NUL character"}}) {
        ordered_json whole = document({});
        whole["flashDrive"] = name;
        const SimulatedTarget device(whole);
        fs::create_directory(device.folder() / "flash");
        testing::internal::CaptureStderr();
        const Scan scan;
        testing::internal::GetCapturedStderr();
        ASSERT_EQ(scan.errors.count(), 1U);
        EXPECT_EQ(scan.errors.text(0),
                  "The target file " + device.path().string() + " cannot be read: flashDrive: " + reason + ".");
    }
}
