// Fuzz entry for the target file: it is read, or refused with nothing left over; what updates write to it can be read
// again, and has nothing else changed.
#include <iostream>
#include <nlohmann/json.hpp>

#include "FuzzedTarget.h"
#include "Fuzzing.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/Resources.h"
#include "simulation/target/TargetFile.h"
#include "support/OpenUpdater.h"
#include "support/TextFile.h"

using nlohmann::json;
using TrellanSimulation::TargetFile;

namespace {

bool isShownByTheLibrary()
{
    ZoNTrellanUpdater::ZoTOptions options;
    options.command = ZoNTrellanUpdater::INSTALLED_VERSIONS;
    options.verbose = true;
    OpenUpdater updater(options);
    updater.setMessageCallBack([](const std::string&) {});
    const bool read = updater.apply() == 0;
    if (read) {
        updater.run();
    }
    ZoCErrorManager::getSingleton()->getMasterErrorList().clear();
    return read;
}

void updateAllElements(TargetFile& file)
{
    using namespace ZoNInventoryIDs;
    const auto tree = file.makeTree();
    tree->forEach([&](TrellanSimulation::TreeItem& item) {
        const ZoCInventoryItem* const board = item.getParent() == nullptr ? nullptr : item.getParent()->getParent();
        const ZoCInventoryParameter* const id = item.getParameter(ID);
        const auto* const number = id == nullptr ? nullptr : std::get_if<std::uint64_t>(&id->value);
        if (board != nullptr && number != nullptr) {
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

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::cerr.rdbuf(nullptr);
    const json before = json::parse(data, data + size, nullptr, false);
    const FuzzedTarget target(textOf(data, size));
    const bool read = isShownByTheLibrary();
    const auto left = TrellanSimulation::resources();
    require(left.inventoryTrees == 0 && left.errorLists == 0, "nothing is left over");
    require(!read || before.is_object(), "only a JSON object is a target");
    try {
        TargetFile file(target.path());
        updateAllElements(file);
    } catch (const std::runtime_error&) {
        require(!read, "what the library can read can be updated");
        return 0;
    }
    requireUpdatesAlone(before, json::parse(readText(target.path())));
    const TargetFile again(target.path());
    return 0;
}
