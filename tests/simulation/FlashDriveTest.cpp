#include <gtest/gtest.h>

#include <fstream>

#include "Device.h"
#include "FlashTarget.h"

using namespace ZoNInventoryIDs;
using nlohmann::ordered_json;
namespace fs = std::filesystem;

TEST_F(FlashDrive, IsTheFolderBesideTheTargetFile)
{
    const FlashTarget device;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    writeText(flashPath / "a.txt", "written by the device");
    EXPECT_EQ(readText(device.flash() / "a.txt"), "written by the device");
    writeText(device.flash() / "b.txt", "written beside it");
    EXPECT_EQ(readText(flashPath / "b.txt"), "written beside it");
}

TEST_F(FlashDrive, BelongsToTheTargetOfTheLastScan)
{
    const FlashTarget first;
    writeText(first.flash() / "file", "first");
    {
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
        EXPECT_EQ(readText(flashPath / "file"), "first");
    }
    const FlashTarget second;
    writeText(second.flash() / "file", "second");
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    EXPECT_EQ(readText(flashPath / "file"), "second");
    const Scan again;
    EXPECT_EQ(readText(flashPath / "file"), "second");
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
    writeText("flash/b.txt", "written");
    EXPECT_EQ(readText(flashPath / "b.txt"), "written");
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
                             device.flash().string() +
                             ": No such file or directory, make that folder or leave flashDrive out.";
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
                                       ": Not a directory, make that folder or leave flashDrive out.");
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

TEST_F(FlashDrive, LeavesAnElementWithoutALocationAsItIs)
{
    ordered_json document = flashDocument({"digits.txt", "digits.txt"});
    ordered_json& elements = document["tree"]["items"][0]["items"][0]["items"];
    elements[0]["parameters"].erase("LOCATION");
    const SimulatedTarget device(document);
    fs::create_directory(device.folder() / "flash");
    writeText(device.folder() / "flash/digits.txt", "123456789");
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    ErrorPool errors;
    const ZoCInventoryItem& info = scan.item(CN / UPDATE_INFO);
    EXPECT_EQ(info.getItem(FILESYSTEM_ELEMENT[1])->getValue<unsigned char>(errors, VALID), 0);
    EXPECT_EQ(info.getItem(FILESYSTEM_ELEMENT[1])->getParameter(CHECKSUM_CRC32), nullptr);
    EXPECT_EQ(info.getItem(FILESYSTEM_ELEMENT[2])->getValue<unsigned char>(errors, VALID), 1);
}

TEST_F(FlashDrive, HasNoFileThatLiesOutside)
{
    const std::vector<std::string> locations = {
        "../digits.txt",  "etc/../../digits.txt", "link.txt", "etc/link.txt", "folder/digits.txt", "..",
        "/../digits.txt",
    };
    const FlashTarget device(locations);
    writeText(device.target.folder() / "digits.txt", "123456789");
    fs::create_directory(device.flash() / "etc");
    fs::create_symlink("../digits.txt", device.flash() / "link.txt");
    fs::create_symlink(device.target.folder() / "digits.txt", device.flash() / "etc" / "link.txt");
    fs::create_symlink(device.target.folder(), device.flash() / "folder");
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    ErrorPool errors;
    for (unsigned index = 1; index <= locations.size(); ++index) {
        const ZoCInventoryItem& absent = scan.item(CN / UPDATE_INFO / FILESYSTEM_ELEMENT[index]);
        EXPECT_EQ(absent.getValue<unsigned char>(errors, VALID), 0) << locations[index - 1];
        EXPECT_EQ(absent.getParameter(CHECKSUM_CRC32), nullptr) << locations[index - 1];
    }
}

TEST_F(FlashDrive, HasTheFilesToWhichLinksLeadWithinIt)
{
    const std::vector<std::string> locations = {"etc/../digits.txt", "link.txt", "etc/link.txt", "/folder//digits.txt"};
    const FlashTarget device(locations);
    writeText(device.flash() / "digits.txt", "123456789");
    fs::create_directory(device.flash() / "etc");
    fs::create_symlink("digits.txt", device.flash() / "link.txt");
    fs::create_symlink("../digits.txt", device.flash() / "etc" / "link.txt");
    fs::create_symlink(flashPath, device.flash() / "folder");  // as the device sees it
    const Scan scan;
    ASSERT_EQ(scan.result, 0);
    ErrorPool errors;
    for (unsigned index = 1; index <= locations.size(); ++index) {
        const ZoCInventoryItem& present = scan.item(CN / UPDATE_INFO / FILESYSTEM_ELEMENT[index]);
        EXPECT_EQ(present.getValue<unsigned char>(errors, VALID), 1) << locations[index - 1];
        EXPECT_EQ(present.getValue<unsigned>(errors, CHECKSUM_CRC32), 0xCBF43926U) << locations[index - 1];
    }
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
    writeText(first.flash() / "a.txt", "1");
    {
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
        EXPECT_EQ(readText(flashPath / "a.txt"), "1");
    }
    {
        const SimulatedTarget device(target({}));
        const Scan scan;
        ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
        EXPECT_FALSE(fs::exists(flashPath / "a.txt"));
    }
    const FlashTarget next;
    const Scan scan;
    ASSERT_EQ(scan.result, 0) << scan.errors.text(0);
    writeText(flashPath / "b.txt", "2");
    EXPECT_EQ(readText(next.flash() / "b.txt"), "2");
}

TEST_F(FlashDrive, HasANameThatIsAPath)
{
    for (const auto& [name, reason] :
         {std::pair<std::string, std::string>{"", "empty"}, {std::string("flash\0y", 7), "holds a NUL character"}}) {
        ordered_json whole = flashDocument();
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
