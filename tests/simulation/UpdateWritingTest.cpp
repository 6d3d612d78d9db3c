// What finished updates leave in the target file.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>
#include <utility>
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

TEST(UpdateSession, GivesNewValuesToTheUpdatedElementAlone)
{
    const ElementDevice device(
        oldValues,
        {{"tree",
          target({board("HCN", {},
                        {item("UPDATE_ELEMENT[1]", oldValues), item("UPDATE_ELEMENT[2]", {{"ID", 2}})})})["tree"]}});
    const ordered_json other = device.target.document()["tree"]["items"][0]["items"][0]["items"][1];
    const Scan scan;
    Session session;
    session.start(1, device.file());
    session.start(2, device.file());
    pass(10'000'000);
    EXPECT_EQ(session.poll(1).status, 2U);
    const Scan again;  // the other one is not finished, as far as anybody has asked
    const ZoCInventoryItem* const info = again.tree->getFirstSubItem()->getFirstSubItem();
    const ZoCInventoryItem* const first = info->getFirstSubItem();
    ErrorPool errors;
    EXPECT_EQ(first->getValue<unsigned>(errors, ZoNInventoryIDs::CHECKSUM_CRC32), 3421780262U);
    EXPECT_EQ(first->getNext()->getParameter(ZoNInventoryIDs::CHECKSUM_CRC32), nullptr);
    session.unlock();
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
    EXPECT_EQ(device.target.document()["tree"]["items"][0]["items"][0]["items"][1], other);
}

TEST(UpdateSession, ChangesNothingElseInTheFile)
{
    const ElementDevice device(oldValues);
    const std::string before = R"({"script" : {}, "tree": {"items": [{"items": [{"items":
        [{"parameters": {"VERSION": "1.0", "ID": 1, "TYPE_ID": -0}, "id": "UPDATE_ELEMENT"}], "id": "UPDATE_INFO"}],
        "id": "HCN", "parameters": {"SLOT": 36893488147419103231, "NAME": "Ger\u00e4t \"\\", "NAME": "Gerät [1]",
        "TYPE_ID": 1E2, "PRODUCT/ID": 1.10 } }], "id": "ROOT"},
        "clock": "real", "clock": "virtual"}

)";
    writeText(device.target.path(), before);
    update(device);
    std::string after = before;
    after.insert(before.find("-0") + 2, R"(, "CHECKSUM_CRC32": 3421780262, "VALID": 1)");
    EXPECT_EQ(device.text(), after);
}

TEST(UpdateSession, PassesOverWhatAnEarlierMemberHas)
{
    const ElementDevice device(oldValues);
    const std::string before =
        R"({"tree": {"id": "ROOT", "items": [[{"parameters": {}}], 7], "items": "no items", "items": [
        {"id": "HCN", "items": [{"id": "UPDATE_INFO", "items": [
            {"id": "UPDATE_ELEMENT", "parameters": {"VERSION": "1.0", "ID": 1}}]}]}]}}
)";
    writeText(device.target.path(), before);
    update(device);
    std::string after = before;
    after.insert(before.find("\"ID\": 1") + 7, R"(, "CHECKSUM_CRC32": 3421780262, "VALID": 1)");
    EXPECT_EQ(device.text(), after);
}

TEST(UpdateSession, KeepsBlanksBeforeTheDocument)
{
    const ElementDevice device(oldValues);
    const std::string before = "\n \t\r\n" + device.text();
    writeText(device.target.path(), before);
    update(device);
    EXPECT_TRUE(device.text().starts_with("\n \t\r\n{")) << device.text();
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
}

TEST(UpdateSession, AddsParametersTheWayTheOthersAreWritten)
{
    const ElementDevice device(oldValues);
    writeText(device.target.path(), R"({
  "tree": {
    "id": "ROOT",
    "items": [ { "id": "HCN", "items": [ { "id": "UPDATE_INFO", "items": [
      {
        "id": "UPDATE_ELEMENT",
        "parameters": {
          "VALID" : 0,
          "ID" : 1
        }
      } ] } ] } ] },
  "clock": "virtual"
})");
    update(device);
    EXPECT_EQ(device.text(), R"({
  "tree": {
    "id": "ROOT",
    "items": [ { "id": "HCN", "items": [ { "id": "UPDATE_INFO", "items": [
      {
        "id": "UPDATE_ELEMENT",
        "parameters": {
          "VALID" : 1,
          "ID" : 1,
          "CHECKSUM_CRC32" : 3421780262
        }
      } ] } ] } ] },
  "clock": "virtual"
})");
}

// What counts of members that stand twice is the last one, and it is the last one that is changed.
TEST(UpdateSession, ChangesTheLastOfDuplicateMembers)
{
    const ElementDevice device(oldValues);
    const auto document = [](const char* valid, const char* checksum) {
        return std::string("\xEF\xBB\xBF") + R"({"tree": [[]], "clock": "virtual", "tree": {"id": "ROOT", "items": 1,
            "items": [{"id": "HCN", "items": [{"id": "CN"}, {"id": "UPDATE_INFO", "items": [
                {"id": "UPDATE_ELEMENT", "parameters": {"ID": 1, "VALID": 5}}]}],
              "it\u0065ms": [{"items": [
                {"id": "UPDATE_ELEMENT", "parameters": {"ID": 1, "VALID": 6}, "parameters": {"CHECKSUM_CRC32": 1,
                   "ID": 2, "VALID": 0, "\u0049D": 1, "V\u0041LID": )" +
               valid + R"(, "CHECKSUM_CRC32": )" + checksum + R"( }}], "id": "UPDATE_INFO"}]}]}})";
    };
    writeText(device.target.path(), document("0", "\"none\""));
    update(device);
    EXPECT_EQ(device.text(), document("1", "3421780262"));
}

TEST(UpdateSession, GivesTheNewValuesToEveryElementOfTheBoardThatHasTheId)
{
    const ElementDevice device(oldValues);
    ordered_json document = device.target.document();
    ordered_json& elements = document[elementPointer.parent_pointer().parent_pointer()];
    elements.push_back(item("UPDATE_ELEMENT[2]", oldValues));
    elements.push_back(updateElement(3, {{"ID", 3}, {"VALID", 0}}));
    writeText(device.target.path(), document.dump());
    update(device);
    const ordered_json after = device.target.document()[elementPointer.parent_pointer().parent_pointer()];
    EXPECT_EQ(after[0]["parameters"].dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
    EXPECT_EQ(after[1]["parameters"].dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
    EXPECT_EQ(after[2]["parameters"]["VALID"], 0);
}

TEST(UpdateSession, WritesManyElementsWhereverTheyStand)
{
    std::vector<ordered_json> boards;
    for (unsigned number = 1; number <= 3; ++number) {
        boards.push_back(board("HCN[" + std::to_string(number) + "]", {},
                               {updateElement(1, {{"VALID", 0}}), updateElement(2, {{"VALID", 0}})}));
    }
    const SimulatedTarget device(target({item("CN", {}), boards[1], boards[0], boards[2]}));
    const std::string file = device.folder() / "a.bin";
    writeText(file, "");
    ErrorPool errors;
    const Scan scan;
    Session session;
    for (const auto& [number, id] : {std::pair{3U, 2U}, {2U, 1U}, {1U, 2U}}) {
        unsigned polled = id;
        unsigned status = 0;
        unsigned done = 0;
        unsigned total = 0;
        const ZoCInventoryAddress address = ZoNInventoryIDs::ROOT / ZoNInventoryIDs::HCN[number];
        Session::manager().update2(errors, address, session.handle, id, file.c_str(), 0, nullptr);
        Session::manager().updateStatus2(errors, address, polled, status, done, total, nullptr);
        EXPECT_EQ(status, 2U);
    }
    session.unlock();
    EXPECT_EQ(errors.count() + session.errors.count(), 0U);
    const ordered_json items = device.document()["tree"]["items"];
    const auto valid = [&](unsigned at, unsigned element) {
        return items[at]["items"][0]["items"][element]["parameters"]["VALID"].get<int>();
    };
    EXPECT_EQ(valid(1, 0), 1);
    EXPECT_EQ(valid(1, 1), 0);
    EXPECT_EQ(valid(2, 0), 0);
    EXPECT_EQ(valid(2, 1), 1);
    EXPECT_EQ(valid(3, 0), 0);
    EXPECT_EQ(valid(3, 1), 1);
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

// A floating-point number is no value of these parameters, whatever it is equal to.
TEST(UpdateSession, WritesWholeNumbersInThePlaceOfOthersThatAreEqual)
{
    const ElementDevice device({{"ID", 1}, {"VALID", 1.0}, {"CHECKSUM_CRC32", 3421780262.0}});
    update(device);
    EXPECT_EQ(device.element().dump(), R"({"ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
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
