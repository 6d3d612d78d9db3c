#include "growth/World.h"

#include <gtest/gtest.h>

#include "support/TargetBuilder.h"
#include "support/UpdaterOptions.h"

using nlohmann::ordered_json;

namespace {

std::string numbered(const std::string& text, unsigned number)
{
    return text + std::to_string(number);
}

bool hasBoards(unsigned number)
{
    return number % 5 == 0;
}

bool isFile(unsigned number)
{
    return number % 50 == 1;
}

std::string boardTypeOf(unsigned number)
{
    return numbered("KR", number / 8);
}

ordered_json productionEntry(unsigned number)
{
    if (hasBoards(number)) {
        return {{"boards",
                 {{{"boardType", {boardTypeOf(number) + "-A", boardTypeOf(number) + "-B"}}, {"id", number}},
                  {{"boardType", boardTypeOf(number)}, {"id", number}, {"hwCompatibilityId", {1, 2, 3}}}}}};
    }
    ordered_json entry = {{"boardType", boardTypeOf(number)}, {"hwCompatibilityId", {1, 2, 3}}};
    if (isFile(number)) {
        entry["targetPath"] = numbered("/opt/application/file-", number);
    } else {
        entry["id"] = number;
        entry["swCompatibilityId"] = {number % 5};
    }
    return entry;
}

void setProductionElement(ordered_json& board, ordered_json& element, unsigned number)
{
    board["PRODUCT/BOARD_TYPE"] = boardTypeOf(number);
    element["ID"] = number;
    element["HW_COMPATIBILITY_ID"] = number % 3 + 1;
    element["SW_COMPATIBILITY_ID"] = hasBoards(number) ? 0 : number % 5;
}

constexpr unsigned updateSize = 1000;

ordered_json targetOf(const Shape& shape, unsigned count, unsigned seconds)
{
    std::vector<ordered_json> boards;
    for (unsigned i = 0; i < count; ++i) {
        ordered_json boardParameters = {{"PRODUCT/BOARD_TYPE", "T"}, {"PRODUCT/SERIAL_NUMBER", i + 1}};
        ordered_json parameters = {{"ID", 1}, {"NAME", "UserFirmware"}, {"VERSION", "1.0"}, {"CHECKSUM_CRC32", 7}};
        shape.element(boardParameters, parameters, i);
        const std::string id = numbered("IOMODULE[", i + 1) + "]";
        boards.push_back(board(id, boardParameters, {updateElement(1, parameters)}));
    }
    ordered_json document = target(std::move(boards));
    document["bytesPerSecond"] = updateSize / seconds;
    return document;
}

ordered_json descriptionOf(const Shape& shape, unsigned count)
{
    std::vector<ordered_json> entries;
    for (unsigned i = 0; i < count; ++i) {
        ordered_json entry = {{"name", "file.bin"}, {"sequence", i % 10}, {"checksumCrc32", 8}, {"version", "2.0"}};
        entry.update(shape.entry(i));
        entries.push_back(std::move(entry));
    }
    return description(std::move(entries));
}

}  // namespace

Shape production()
{
    return {productionEntry, setProductionElement};
}

World::World(const Shape& shape, unsigned entries, unsigned elements, unsigned command, unsigned seconds)
    : target(targetOf(shape, elements, seconds)), folder(descriptionOf(shape, entries))
{
    ::unsetenv("TRELLAN_TRACE");
    folder.addFile("file.bin", std::string(updateSize, 'x'));
    instance = std::make_unique<OpenUpdater>(optionsFor(command, folder.path()));
    quiet = std::make_unique<MessageCapture>(*instance);
}

void World::apply()
{
    EXPECT_EQ(instance->apply(), 0u) << quiet->text();
}
