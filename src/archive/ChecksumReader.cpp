// Completion of missing checksums from the update files themselves.
#include "archive/ZoCUpdateArchive.h"
#include "base/FileAccess.h"
#include "base/PlatformText.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateArchive;

namespace {

// Tries the kinds of update files one after the other.
bool readChecksum(const std::string& path, std::uint32_t& checksumCrc32)
{
    std::uint32_t minHw, maxHw, minSw, maxSw, typeId;
    std::uint32_t checksum = notAvailable;
    ZoCVersion version;
    int result = ZoCUpdateArchive::readUpdateFileHeader(path, minHw, maxHw, minSw, maxSw, typeId, checksum, version);
    if (result == 1) {
        result = ZoCUpdateArchive::readUpdateFileInventory(path, minHw, maxHw, minSw, maxSw, typeId, checksum, version);
        if (result == 1) {
            result = ZoCUpdateArchive::readPgiBitstreamFileHeader(path, checksum);
        }
    }
    if (result != 0) {
        return false;
    }
    checksumCrc32 = checksum;
    return true;
}

}  // namespace

bool ZoCUpdateArchive::readUpdateFiles()
{
    unsigned openedFiles = 0;
    for (ZoSUpdateFile& file : files) {
        if (file.checksumCrc32 != notAvailable) {
            continue;
        }
        const std::string path = options->archivePath + "/" + allText(file.name);
        if (!isReadable(path)) {
            file.fileMissing = true;
            return fail("ERROR: Cannot read checksum from update file. '%s' not found.\n", path.c_str());
        }
        if (!readChecksum(path, file.checksumCrc32)) {
            return fail("ERROR: Cannot read checksum from update file %s.\n", file.name.c_str());
        }
        ++openedFiles;
    }
    if (openedFiles != 0 && options->command != ZoNTrellanUpdater::OUTPUT_DESCRIPTION) {
        owner->print("%u update files needed to be opened to get parameters not contained in the description file.\n\n",
                     openedFiles);
    }
    return true;
}
