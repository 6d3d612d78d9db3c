// What the inspector tells of the archive's update files.
#include <stdexcept>

#include "archive/ZoCUpdateArchive.h"
#include "base/CellText.h"
#include "base/PlatformText.h"
#include "inspection/FileKeys.h"
#include "inspection/ZoCTrellanInspector.h"

using namespace ZoNUpdateArchive;
using namespace ZoNUpdateBase;
using ZoNTrellanInspector::ZoTFile;
using ZoNTrellanInspector::ZoTFileKeys;

const ZoSUpdateFile& ZoCTrellanInspector::fileAt(unsigned position) const
{
    const auto& files = updater.getArchive().getUpdateFileList();
    if (position >= files.size()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such file");
    }
    return files[position];
}

unsigned ZoCTrellanInspector::getFileCount()
{
    return static_cast<unsigned>(updater.getArchive().getUpdateFileList().size());
}

const ZoTFile& ZoCTrellanInspector::getFile(unsigned position)
{
    const ZoSUpdateFile& source = fileAt(position);
    file.entry = source.entry;
    file.name = allText(source.name);
    file.path = updater.getArchive().pathOf(source);
    file.sequence = source.sequence;
    file.isUpgrade = source.mode == UpdateMode::upgrade;
    file.version = versionText(source.version);
    file.hasChecksum = source.checksumCrc32 != notAvailable;
    file.checksum = file.hasChecksum ? source.checksumCrc32 : 0;
    file.statesChecksum = source.statesChecksum;
    file.isForFlashDrive = source.hasTargetPath;
    file.elementCount = source.assignedElementCount;
    return file;
}

unsigned ZoCTrellanInspector::readFileKeys(unsigned position)
{
    readKeys = std::make_unique<ZoNUpdateInspection::FileKeys>(fileAt(position));
    return static_cast<unsigned>(readKeys->size());
}

const ZoTFileKeys& ZoCTrellanInspector::getFileKeys(unsigned number)
{
    if (!readKeys || number >= readKeys->size()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such board object");
    }
    fileKeys = readKeys->at(number);
    return fileKeys;
}
