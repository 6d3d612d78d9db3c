// What finished updates leave in the target file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <vector>

#include "Device.h"
#include "ElementDevice.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;

namespace {

// Updates element 1 with a.bin and unlocks the device.
void update(const ElementDevice& device)
{
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(10'000'000);
    EXPECT_EQ(session.poll(1).status, 2U);
    session.unlock();
    EXPECT_EQ(session.errors.count(), 0U);
}

}  // namespace

TEST(UpdateSession, WritesTheNewValuesAtUnlock)
{
    const ElementDevice device(oldValues);
    const std::string before = device.text();
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(10'000'000);
    session.poll(1);
    pass(10'000'000);
    EXPECT_EQ(device.text(), before);
    session.unlock();
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
}

TEST(UpdateSession, ChangesNothingElseInTheFile)
{
    const ElementDevice device(oldValues);
    std::ofstream(device.target.path()) << R"({"script": {}, "tree": {"items": [{"items": [{"items":
        [{"parameters": {"VERSION": "1.0", "ID": 1}, "id": "UPDATE_ELEMENT"}], "id": "UPDATE_INFO"}],
        "id": "HCN", "parameters": {"SLOT": 18446744073709551615, "NAME": "Gerät"}}], "id": "ROOT"},
        "clock": "virtual"})";
    update(device);
    EXPECT_EQ(device.text(), R"({
  "script": {},
  "tree": {
    "items": [
      {
        "items": [
          {
            "items": [
              {
                "parameters": {
                  "VERSION": "1.0",
                  "ID": 1,
                  "CHECKSUM_CRC32": 3421780262,
                  "VALID": 1
                },
                "id": "UPDATE_ELEMENT"
              }
            ],
            "id": "UPDATE_INFO"
          }
        ],
        "id": "HCN",
        "parameters": {
          "SLOT": 18446744073709551615,
          "NAME": "Gerät"
        }
      }
    ],
    "id": "ROOT"
  },
  "clock": "virtual"
}
)");
}

TEST(UpdateSession, TakesVersionAndChecksumFromAHeader)
{
    const ElementDevice device(oldValues);
    UpdateFiles::BinaryHeader header;
    header.checksum = 99;
    header.version = {23, 2, 0};
    device.write(UpdateFiles::binaryFile(header));
    update(device);
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"23.2","ID":1,"VALID":1,"CHECKSUM_CRC32":99})");
}

TEST(UpdateSession, KeepsWhatAFileDoesNotCarry)
{
    const ElementDevice device(oldValues);
    device.write(UpdateFiles::bitstreamFile(99, 64));
    update(device);
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":7})");
}

TEST(UpdateSession, LeavesTheFileAloneWhenNothingHasChanged)
{
    const ElementDevice device({{"ID", 1}, {"VALID", 1}, {"CHECKSUM_CRC32", 3421780262}});
    std::ofstream(device.target.path(), std::ios::app) << "\n\n";
    const std::string before = device.text();
    update(device);
    EXPECT_EQ(device.text(), before);
}

TEST(UpdateSession, KeepsTheModeOfTheFile)
{
    const ElementDevice device(oldValues);
    ASSERT_EQ(::chmod(device.target.path().c_str(), 0640), 0);
    update(device);
    struct stat status = {};
    ASSERT_EQ(::stat(device.target.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(device.element()["VALID"], 1);
}

TEST(UpdateSession, ReplacesTheFileBehindASymbolicLink)
{
    const ElementDevice device(oldValues);
    const auto link = device.target.folder() / "link.json";
    std::filesystem::create_symlink("target.json", link);
    ::setenv("TRELLAN_TARGET", link.c_str(), 1);
    update(device);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(device.element()["VALID"], 1);
}

TEST(UpdateSession, ReportsATargetFileThatCannotBeWritten)
{
    const ElementDevice device(oldValues);
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(10'000'000);
    session.poll(1);
    std::filesystem::remove(device.target.path());
    session.unlock();
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300007U);
    const std::string path = device.target.path();
    EXPECT_EQ(session.errors.text(0), "The target file " + path + " cannot be read: it cannot be written: stat " +
                                          path + ": No such file or directory.");
    std::vector<std::string> left;
    for (const auto& entry : std::filesystem::directory_iterator(device.target.folder())) {
        left.push_back(entry.path().filename());
    }
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (std::vector<std::string>{"a.bin", "target.json.lock", "trace.jsonl"}));
}

TEST(UpdateSession, ShowsItsNewValuesToAScan)
{
    using namespace ZoNInventoryIDs;
    const ElementDevice device(oldValues);
    const Scan before;
    Session session;
    session.start(1, device.file());
    pass(10'000'000);
    session.poll(1);
    const Scan during;
    ErrorPool errors;
    EXPECT_EQ(during.item(HCN / UPDATE_INFO / UPDATE_ELEMENT).getValue<unsigned>(errors, CHECKSUM_CRC32), 0xCBF43926U);
    session.unlock();
    const Scan after;
    EXPECT_EQ(after.item(HCN / UPDATE_INFO / UPDATE_ELEMENT).getValue<unsigned>(errors, CHECKSUM_CRC32), 0xCBF43926U);
    EXPECT_EQ(errors.count(), 0U);
}

TEST(UpdateSession, ReadsTheFileAgainWhenItBegins)
{
    const ElementDevice device(oldValues);
    const Scan scan;
    ordered_json document = device.target.document();
    document[elementPointer]["VERSION"] = "2.0";  // as another process would have left it
    std::ofstream(device.target.path()) << document;
    Session session;
    session.start(1, device.file());
    pass(10'000'000);
    session.poll(1);
    session.unlock();
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"2.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
}
