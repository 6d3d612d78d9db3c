// Fuzz entry for the description reader: whatever the file holds, reading ends with success, where it is JSON, or
// with exactly one error.
#include <nlohmann/json.hpp>

#include "Fuzzing.h"
#include "archive/ZoCUpdateArchive.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/OpenUpdater.h"

static unsigned errors = 0;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const MemoryFile file(data, size);
    OpenUpdater updater{ZoNTrellanUpdater::ZoTOptions()};
    updater.setMessageCallBack([](const std::string& text) { errors += text.rfind("ERROR: ", 0) == 0; });
    errors = 0;
    const bool read = updater.getArchive().readDescriptionFileJson(
        ZoCErrorManager::getSingleton()->getMasterErrorList(), file.path());
    require(errors == (read ? 0 : 1), "one message for a failure, and none for a success");
    require(!read || nlohmann::json::accept(data, data + size), "what is read is JSON");
    if (read) {
        updater.getArchive().printArchive();
        updater.getArchive().outputDescriptionFile();
    }
    return 0;
}
