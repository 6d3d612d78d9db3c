#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "Device.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "simulation/base/Resources.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/UpdateFiles.h"

using nlohmann::ordered_json;

namespace {

// Lets simulated time pass.
void pass(unsigned microseconds)
{
    ZoNRtosAbstraction::usleep(microseconds);
}

const ordered_json::json_pointer elementPointer("/tree/items/0/items/0/items/0/parameters");

// A device with the element 1, and 9 bytes in the file a.bin beside it.
class Device {
public:
    explicit Device(const ordered_json& parameters, const ordered_json& more = ordered_json::object())
        : target(document(parameters, more))
    {
        write("123456789");
    }

    void write(const std::string& content) const { std::ofstream(file(), std::ios::binary) << content; }

    // The absolute path of a.bin.
    std::string file() const { return target.folder() / "a.bin"; }

    // The parameters of the element in the target file.
    ordered_json element() const { return target.document()[elementPointer]; }

    std::string text() const
    {
        std::ostringstream content;
        content << std::ifstream(target.path()).rdbuf();
        return content.str();
    }

    SimulatedTarget target;

private:
    static ordered_json document(const ordered_json& parameters, const ordered_json& more)
    {
        ordered_json whole = ::target({board("HCN", {}, {item("UPDATE_ELEMENT[1]", parameters)})});
        whole.update(more);
        return whole;
    }
};

const ordered_json oldValues = {{"VERSION", "1.0"}, {"ID", 1}, {"VALID", 0}, {"CHECKSUM_CRC32", 7}};

// Updates element 1 with a.bin and unlocks the device.
void update(const Device& device)
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

TEST(UpdateSession, MakesProgressByTheClock)
{
    const Device device(oldValues, {{"bytesPerSecond", 3}});
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 9}));
    pass(333333);
    EXPECT_EQ(session.poll(1), (Poll{1, 0, 9}));
    pass(1);
    EXPECT_EQ(session.poll(1), (Poll{1, 1, 9}));
    pass(2'666'665);
    EXPECT_EQ(session.poll(1), (Poll{1, 8, 9}));
    pass(1);
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
    pass(5'000'000);
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
    EXPECT_EQ(session.errors.count(), 0U);
}

TEST(UpdateSession, TransfersAMebibyteInASecondUnlessStatedOtherwise)
{
    const Device device(oldValues);
    device.write(std::string(2'000'000, 'x'));
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(1'000'000);
    EXPECT_EQ(session.poll(1), (Poll{1, 1048576, 2'000'000}));
}

TEST(UpdateSession, IsNotConfusedByEnormousRates)
{
    const Device device(oldValues, {{"bytesPerSecond", 18446744073709551615ULL}});
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(4'000'000'000);
    EXPECT_EQ(session.poll(1), (Poll{2, 9, 9}));
}

TEST(UpdateSession, FinishesAnEmptyFileAtOnce)
{
    const Device device(oldValues);
    device.write("");
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1), (Poll{2, 0, 0}));
}

TEST(UpdateSession, WritesTheNewValuesAtUnlock)
{
    const Device device(oldValues);
    const std::string before = device.text();
    const Scan scan;
    Session session;
    session.start(1, device.file());
    pass(10'000'000);
    session.poll(1);
    EXPECT_EQ(device.text(), before);
    session.unlock();
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":3421780262})");
}

TEST(UpdateSession, ChangesNothingElseInTheFile)
{
    const Device device(oldValues);
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
    const Device device(oldValues);
    UpdateFiles::BinaryHeader header;
    header.checksum = 99;
    header.version = {23, 2, 0};
    device.write(UpdateFiles::binaryFile(header));
    update(device);
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"23.2","ID":1,"VALID":1,"CHECKSUM_CRC32":99})");
}

TEST(UpdateSession, KeepsWhatAFileDoesNotCarry)
{
    const Device device(oldValues);
    device.write(UpdateFiles::bitstreamFile(99, 64));
    update(device);
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":7})");
}

TEST(UpdateSession, LeavesTheFileAloneWhenNothingHasChanged)
{
    const Device device({{"ID", 1}, {"VALID", 1}, {"CHECKSUM_CRC32", 3421780262}});
    std::ofstream(device.target.path(), std::ios::app) << "\n\n";
    const std::string before = device.text();
    update(device);
    EXPECT_EQ(device.text(), before);
}

TEST(UpdateSession, KeepsTheModeOfTheFile)
{
    const Device device(oldValues);
    ASSERT_EQ(::chmod(device.target.path().c_str(), 0640), 0);
    update(device);
    struct stat status = {};
    ASSERT_EQ(::stat(device.target.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0640U);
    EXPECT_EQ(device.element()["VALID"], 1);
}

TEST(UpdateSession, ReplacesTheFileBehindASymbolicLink)
{
    const Device device(oldValues);
    const auto link = device.target.folder() / "link.json";
    std::filesystem::create_symlink("target.json", link);
    ::setenv("TRELLAN_TARGET", link.c_str(), 1);
    update(device);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(device.element()["VALID"], 1);
}

TEST(UpdateSession, WritesEachFinishedElementAtOnceOnARealClock)
{
    const Device device(oldValues, {{"clock", "real"}});
    device.write("");
    const Scan scan;
    Session session;
    session.start(1, device.file());
    EXPECT_EQ(session.poll(1).status, 2U);
    EXPECT_EQ(device.element().dump(), R"({"VERSION":"1.0","ID":1,"VALID":1,"CHECKSUM_CRC32":0})");
}

TEST(UpdateSession, ReportsATargetFileThatCannotBeWritten)
{
    const Device device(oldValues);
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
    const Device device(oldValues);
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
    const Device device(oldValues);
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

TEST(UpdateSession, RefusesElementsThatTheBoardDoesNotHave)
{
    const Device device(oldValues);
    const Scan scan;
    Session session;
    session.start(2, device.file());
    ASSERT_EQ(session.errors.count(), 1U);
    EXPECT_EQ(session.errors.code(0), 0x26300005U);
    EXPECT_EQ(session.errors.text(0), "There is no update element 2 on /ROOT/HCN.");
    session.board = session.board / ZoNInventoryIDs::UPDATE_INFO;
    session.start(1, device.file());
    ASSERT_EQ(session.errors.count(), 2U);
    EXPECT_EQ(session.errors.text(1), "There is no update element 1 on /ROOT/HCN/UPDATE_INFO.");
    EXPECT_EQ(session.poll(2), (Poll{0, 0, 0}));
}

TEST(UpdateSession, NeverFindsAnElementWithoutAnId)
{
    for (const ordered_json& id : std::vector<ordered_json>{nullptr, "1", -1, 4294967297}) {
        ordered_json parameters = {{"VALID", 1}};
        if (!id.is_null()) {
            parameters["ID"] = id;
        }
        const Device device(parameters);
        const Scan scan;
        Session session;
        session.start(1, device.file());
        session.start(0, device.file());
        ASSERT_EQ(session.errors.count(), 2U);
        EXPECT_EQ(session.errors.code(0), 0x26300005U);
        EXPECT_EQ(session.errors.code(1), 0x26300005U);
    }
}

TEST(UpdateSession, RefusesFilesThatCannotBeRead)
{
    const Device device(oldValues);
    const Scan scan;
    Session session;
    session.start(1, "/nowhere/a.bin");
    session.start(1, "/tmp");
    Session::manager().update2(session.errors, session.board, session.handle, 1, nullptr, 0, nullptr);
    ASSERT_EQ(session.errors.count(), 3U);
    EXPECT_EQ(session.errors.code(0), 0x26300006U);
    EXPECT_EQ(session.errors.text(0), "The update file /nowhere/a.bin cannot be read.");
    EXPECT_EQ(session.errors.text(1), "The update file /tmp cannot be read.");
    EXPECT_EQ(session.errors.code(2), 0x26300006U);
    EXPECT_EQ(session.poll(1), (Poll{0, 0, 0}));
}

TEST(UpdateSession, RefusesAnyOtherHandle)
{
    const Device device(oldValues);
    const Scan scan;
    Session session;
    const unsigned handle = session.handle;
    session.handle = handle + 1;
    const std::string text = "The lock handle " + std::to_string(handle + 1) + " is not valid.";
    session.start(7, "/nowhere");
    session.collect(1);
    Session::manager().updateFinish(session.errors, session.board, session.handle, nullptr);
    Session::manager().unlock(session.errors, session.handle);
    ASSERT_EQ(session.errors.count(), 4U);
    for (unsigned index = 0; index < 4; ++index) {
        EXPECT_EQ(session.errors.code(index), 0x26300004U);
        EXPECT_EQ(session.errors.text(index), text);
    }
    session.handle = handle;
    session.unlock();
    EXPECT_EQ(session.errors.count(), 4U);
    Session::manager().unlock(session.errors, handle);
    EXPECT_EQ(session.errors.count(), 5U);
}

TEST(UpdateSession, ForgetsItsUpdatesAtTheEnd)
{
    const Device device(oldValues);
    const Scan scan;
    Session first;
    first.start(1, device.file());
    EXPECT_EQ(first.poll(1), (Poll{1, 0, 9}));
    first.unlock();
    EXPECT_EQ(first.poll(1), (Poll{0, 0, 0}));
    Session second;
    EXPECT_EQ(second.poll(1), (Poll{0, 0, 0}));
}

TEST(UpdateSession, TracesEachCall)
{
    const Device device(oldValues, {{"bytesPerSecond", 1}});
    ErrorPool errors;
    ErrorPool results;
    auto& manager = *ZoCInventoryManager::getInstance();
    const auto board = ZoNInventoryIDs::ROOT / ZoNInventoryIDs::HCN;
    ZoCInventoryItem* tree = nullptr;
    unsigned handle = 0;
    unsigned id = 1;
    Poll poll;
    EXPECT_EQ(manager.scan(errors, tree, true, nullptr), 0);
    manager.deleteInventoryTree(tree);
    EXPECT_EQ(manager.lock(errors, 0x10003, handle), 0);
    EXPECT_EQ(manager.update2(errors, board, handle, 1, device.file().c_str(), 1700000000ULL, nullptr), 0);
    EXPECT_EQ(manager.updateStatus2(errors, board, id, poll.status, poll.done, poll.total, nullptr), 0);
    EXPECT_EQ(manager.updateErrors2(errors, board, handle, 1, results, nullptr), 0);
    EXPECT_EQ(manager.updateFinish(errors, board, handle, nullptr), 0);
    EXPECT_EQ(manager.unlock(errors, handle), 0);
    EXPECT_EQ(manager.unlock(errors, handle), 1);

    const std::string number = std::to_string(handle);
    std::string lines;
    for (const ordered_json& call : device.target.trace()) {
        lines += call.dump() + '\n';
    }
    EXPECT_EQ(lines, R"({"call":"scan","argument":true,"result":0})"
                     "\n"
                     R"({"call":"deleteInventoryTree"})"
                     "\n"
                     R"({"call":"lock","argument":65539,"handle":)" +
                         number +
                         "}\n"
                         R"({"call":"update2","board":"/ROOT/HCN","handle":)" +
                         number + R"(,"id":1,"path":")" + device.file() +
                         R"(","fileTime":1700000000})"
                         "\n"
                         R"({"call":"updateStatus2","board":"/ROOT/HCN","id":1,"status":1,"done":0,"total":9})"
                         "\n"
                         R"({"call":"updateErrors2","board":"/ROOT/HCN","handle":)" +
                         number +
                         ",\"id\":1}\n"
                         R"({"call":"updateFinish","node":"/ROOT/HCN","handle":)" +
                         number +
                         "}\n"
                         R"({"call":"unlock","handle":)" +
                         number +
                         "}\n"
                         R"({"call":"unlock","handle":)" +
                         number + ",\"errors\":1}\n");
}

TEST(UpdateSession, TracesTheErrorsOfBothListsTogether)
{
    ordered_json script;
    const ordered_json error = {{"code", 1}, {"text", "slow"}};
    script["elements"]["/ROOT/HCN#1"]["finish"] = ordered_json::array(
        {{{"errors", ordered_json::array({error})}, {"results", ordered_json::array({error, error})}}});
    const Device device(oldValues, {{"script", script}});
    const Scan scan;
    Session session;
    session.collect(1);
    EXPECT_EQ(device.target.trace().back()["errors"], 3);
}
