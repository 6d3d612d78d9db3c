#include "simulation/libZoErrorHandling/MessageTables.h"

#include <algorithm>
#include <vector>

#include "simulation/base/Resources.h"

namespace MessageTables {

namespace {

using Tables = std::vector<const ZoResText*>;

// Never destroyed: libraries register and unregister while static objects are being made and destroyed.
Tables& tables()
{
    static Tables& instance = *new Tables;
    return instance;
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
