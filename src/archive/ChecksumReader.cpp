// Completion of missing checksums from the update files themselves.
#include "archive/FileHeader.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/FileAccess.h"
#include "base/PlatformText.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateArchive;

namespace {

// False when the file with this beginning is of no kind that has a header.
bool readChecksum(const std::string& path, const std::string& beginning, std::uint32_t& checksumCrc32)
{
    const FileHeader header = readHeader(path, beginning);
    checksumCrc32 = header.checksumCrc32;
    return mayTellChecksum(header);
}

}  // namespace

std::string ZoNUpdateArchive::untoldChecksumMessage(const ZoSUpdateFile& file)
{
    return "ERROR: Cannot read checksum from update file " + textBeforeNul(file.name) + ".\n";
}

std::string ZoCUpdateArchive::pathOf(const ZoSUpdateFile& file) const
{
    return getPath() + "/" + allText(file.name);
}

bool ZoCUpdateArchive::readUpdateFiles()
{
    unsigned openedFiles = 0;
    for (ZoSUpdateFile& file : files) {
        if (file.checksumCrc32 != notAvailable) {
            continue;
        }
        const std::string path = pathOf(file);
        const auto beginning = readBeginning(path);
        if (!beginning && !isReadable(path)) {
            file.fileMissing = true;
            return fail("ERROR: Cannot read checksum from update file. '%s' not found.\n", path.c_str());
        }
        if (!beginning || !readChecksum(path, *beginning, file.checksumCrc32)) {
            return fail("%s", untoldChecksumMessage(file).c_str());
        }
        ++openedFiles;
    }
    if (openedFiles != 0 && options->command != ZoNTrellanUpdater::OUTPUT_DESCRIPTION) {
        owner->print("%u update files needed to be opened to get parameters not contained in the description file.\n\n",
                     openedFiles);
    }
    return true;
}
