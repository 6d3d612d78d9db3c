// Fuzz entry for the description reader: whatever the file holds, reading ends with success or with exactly one error.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "archive/ZoCUpdateArchive.h"
#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/OpenUpdater.h"

static unsigned errors = 0;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const int file = ::memfd_create("description", 0);
    if (file < 0 || ::write(file, data, size) != static_cast<ssize_t>(size)) {
        std::abort();
    }
    OpenUpdater updater{ZoNTrellanUpdater::ZoTOptions()};
    updater.setMessageCallBack([](const std::string& text) { errors += text.rfind("ERROR: ", 0) == 0; });
    errors = 0;
    const bool read = updater.getArchive().readDescriptionFileJson(
        ZoCErrorManager::getSingleton()->getMasterErrorList(), "/proc/self/fd/" + std::to_string(file));
    ::close(file);
    if (errors != (read ? 0 : 1)) {
        std::abort();
    }
    if (read) {
        updater.getArchive().printArchive();
        updater.getArchive().outputDescriptionFile();
    }
    return 0;
}
