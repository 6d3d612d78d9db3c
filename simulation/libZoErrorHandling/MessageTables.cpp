#include "simulation/libZoErrorHandling/MessageTables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory_resource>
#include <new>
#include <vector>

#include "simulation/base/Resources.h"

namespace MessageTables {

namespace {

// Libraries register while they are loaded, where nobody could be told that memory is short: the first tables have room
// without any.
struct Tables {
    static constexpr std::size_t tablesWithRoom = 64;

    Tables() { list.reserve(tablesWithRoom); }

    alignas(std::max_align_t) std::array<std::byte, tablesWithRoom * sizeof(void*)> room;
    std::pmr::monotonic_buffer_resource memory{room.data(), room.size()};
    std::pmr::vector<const ZoResText*> list{&memory};
};

// Never destroyed: libraries register and unregister while static objects are being made and destroyed.
std::pmr::vector<const ZoResText*>& tables()
{
    alignas(Tables) static std::byte place[sizeof(Tables)];
    static Tables& instance = *new (place) Tables;
    return instance.list;
}

const char* textOf(const ZoResText& table, unsigned code)
{
    const bool within = code >= table.baseCode && code - table.baseCode <= table.lastIndex;
    return within ? table.texts[code - table.baseCode] : nullptr;
}

}  // namespace

void addTable(const ZoResText& table)
{
    tables().push_back(&table);
    ++TrellanSimulation::resources().messageTables;
}

void removeTable(const ZoResText& table)
{
    const auto found = std::find(tables().begin(), tables().end(), &table);
    if (found == tables().end()) {
        return;
    }
    tables().erase(found);
    --TrellanSimulation::resources().messageTables;
}

std::optional<std::string> findText(unsigned code)
{
    for (auto table = tables().rbegin(); table != tables().rend(); ++table) {
        if (const char* text = textOf(**table, code)) {
            return text;
        }
    }
    return std::nullopt;
}

}  // namespace MessageTables
