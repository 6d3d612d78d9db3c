#include "UpdatedTarget.h"

#include "Fuzzing.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/target/TargetFile.h"

using nlohmann::json;
using TrellanSimulation::TargetFile;

void updateAllElements(const std::string& path)
{
    using namespace ZoNInventoryIDs;
    TargetFile file(path);
    const auto tree = file.makeTree();
    tree->forEach([&](TrellanSimulation::TreeItem& item) {
        const ZoCInventoryItem* const board = item.getParent() == nullptr ? nullptr : item.getParent()->getParent();
        const ZoCInventoryParameter* const id = item.getParameter(ID);
        const auto number = id == nullptr ? std::nullopt : id->value.number();
        if (board != nullptr && number) {
            const std::string key = TrellanSimulation::elementKey(board->getAddress(), static_cast<unsigned>(*number));
            if (file.hasElement(key)) {
                file.installElement(key, {100, 4711, "1.2.3"});
            }
        }
    });
    file.save();
}

void requireUpdatesAlone(const json& before, const json& after)
{
    for (const json& change : json::diff(before, after)) {
        const std::string path = change["path"];
        const json value = change.value("value", json());
        require((path.ends_with("/parameters/CHECKSUM_CRC32") && value == 4711) ||
                    (path.ends_with("/parameters/VERSION") && value == "1.2.3") ||
                    (path.ends_with("/parameters/VALID") && value == 1),
                "an update changes its element and nothing else");
    }
}
