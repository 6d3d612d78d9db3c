// What an update session refuses, and its trace.
#include <gtest/gtest.h>

#include "Device.h"
#include "ElementDevice.h"

using nlohmann::ordered_json;

TEST(UpdateSession, RefusesElementsThatTheBoardDoesNotHave)
{
    const ElementDevice device(oldValues);
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
        const ElementDevice device(parameters);
        const Scan scan;
        Session session;
        session.start(1, device.file());
        session.start(0, device.file());
        ASSERT_EQ(session.errors.count(), 2U);
        EXPECT_EQ(session.errors.code(0), 0x26300005U);
        EXPECT_EQ(session.errors.code(1), 0x26300005U);
    }
}

TEST(UpdateSession, FindsElementsOfBoardsAlone)
{
    const ordered_json element = item("UPDATE_ELEMENT", {{"ID", 1}});
    for (const ordered_json& tree : {element, item("UPDATE_INFO", {}, {element}), item("ROOT", {}, {element}),
                                     item("ROOT", {}, {item("HCN", {}, {element})})}) {
        const ElementDevice device(oldValues, {{"tree", tree}});
        const Scan scan;
        ASSERT_EQ(scan.result, 0);
        Session session;
        for (const ZoCInventoryAddress& board :
             {ZoNInventoryIDs::ROOT / ZoNInventoryIDs::HCN, ZoCInventoryAddress(ZoNInventoryIDs::ROOT),
              ZoCInventoryAddress(ZoNInventoryIDs::UPDATE_INFO)}) {
            session.board = board;
            session.start(1, device.file());
        }
        ASSERT_EQ(session.errors.count(), 3U) << tree;
        for (unsigned i = 0; i < 3; ++i) {
            EXPECT_EQ(session.errors.code(i), 0x26300005U) << tree;
        }
    }
}

TEST(UpdateSession, RefusesFilesThatCannotBeRead)
{
    const ElementDevice device(oldValues);
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
    const ElementDevice device(oldValues);
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
    const ElementDevice device(oldValues);
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
    const ElementDevice device(oldValues, {{"bytesPerSecond", 1}});
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
    const ElementDevice device(oldValues, {{"script", script}});
    const Scan scan;
    Session session;
    session.collect(1);
    EXPECT_EQ(device.target.trace().back()["errors"], 3);
}
