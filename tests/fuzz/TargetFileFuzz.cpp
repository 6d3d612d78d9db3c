// Fuzz entry for the target file: it is read, or refused with nothing left over; what updates write to it can be read
// again, and has nothing else changed.
#include <iostream>
#include <nlohmann/json.hpp>

#include "FuzzedTarget.h"
#include "Fuzzing.h"
#include "UpdatedTarget.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "simulation/base/Resources.h"
#include "support/OpenUpdater.h"
#include "support/TextFile.h"

using nlohmann::json;

static bool isShownByTheLibrary()
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
        updateAllElements(target.path());
    } catch (const std::runtime_error&) {
        require(!read, "what the library can read can be updated");
        return 0;
    }
    requireUpdatesAlone(before, json::parse(readText(target.path())));
    updateAllElements(target.path());
    return 0;
}
