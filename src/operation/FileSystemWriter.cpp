// Writing of files to the compute node's flash drive, by way of a temporary file beside the target.
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>

#include "base/FileAccess.h"
#include "base/PlatformText.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "operation/DriveFiles.h"
#include "operation/PathChecks.h"
#include "operation/TemporaryFile.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace {

constexpr mode_t directoryMode = 0777;
constexpr unsigned syncTimeout = 500;  // milliseconds

// One file on its way to the drive. Each step adds a message and returns false when it fails.
class FileWriter {
public:
    FileWriter(const ZoCTrellanUpdater& updater, bool verbose, std::string source, std::string location,
               DriveFiles& driveFiles, std::vector<std::string>& messages)
        : updater(updater),
          verbose(verbose),
          source(std::move(source)),
          location(std::move(location)),
          target(std::string(driveRoot) + "/" + this->location),
          temporary(target + std::string(temporaryEnding)),
          driveFiles(driveFiles),
          messages(messages)
    {
    }

    bool write()
    {
        if (!checkPaths() || !createDirectories() || !checkPlaces() || !copy() || !replaceTarget()) {
            return false;
        }
        ZoNRtosAbstraction::syncFileSystem(nullptr, syncTimeout);
        if (verbose) {
            tell("Successfully written %s.\n", target);
        }
        return true;
    }

private:
    bool checkPaths()
    {
        if (!isOnDrive(location)) {
            return fail("ERROR: Invalid target file path: %s\n", target);
        }
        if (!fileExists(source)) {
            return fail("ERROR: File %s does not exist.\n", source);
        }
        // The paths go through a shell as they are: whatever it would not take literally is refused.
        if (!isLiteralPath(source) || !isLiteralPath(target)) {
            return failToWrite(EINVAL);
        }
        if (!hasEnd(source)) {
            return failToWrite(EINVAL);
        }
        return followsLinkOutOfDrive(location) ? failToWrite(EXDEV) : true;
    }

    // Creates what is missing of the target's directories, one level after the other; never the drive's root.
    bool createDirectories()
    {
        const std::size_t firstComponent = driveRoot.size() + 1;
        for (std::size_t end = target.find('/', firstComponent); end != std::string::npos;
             end = target.find('/', end + 1)) {
            const bool isEmptyComponent = target[end - 1] == '/';
            if (!isEmptyComponent && !createDirectory(target.substr(0, end))) {
                return false;
            }
        }
        return true;
    }

    bool createDirectory(const std::string& directory)
    {
        if (mkdir(directory.c_str(), directoryMode) == 0) {
            if (verbose) {
                tell("Directory %s created.\n", directory);
            }
            return true;
        }
        if (const int error = errno; error != EEXIST) {
            updater.sprint(messages.emplace_back(), "ERROR: Cannot create directory %s (error code: %d).\n",
                           directory.c_str(), error);
            return false;
        }
        return true;
    }

    // No file may be lost that elements or entries name: behind a link in the target's place, written by this update to
    // the same place by another path, or in the temporary file's place. Nor the one that is copied, nor another one of
    // an archive on the drive, in whose place a later copy would find this one.
    bool checkPlaces()
    {
        const auto old = identityOf(temporary.path());
        const bool isCopied = old && old == identityOf(source, Links::followed);
        if (isCopied || driveFiles.isNeeded(location + std::string(temporaryEnding)) ||
            driveFiles.isWrittenOtherwise(location) || driveFiles.isNeededLink(location) ||
            driveFiles.isOtherUpdateFile(location, source)) {
            return failToWrite(EEXIST);
        }
        return true;
    }

    bool copy()
    {
        if (const int error = temporary.makeRoom(); error != 0) {
            return failToWrite(error);
        }
        const std::string command = "cp " + source + " " + temporary.path();
        if (const int result = std::system(command.c_str()); result != 0) {
            temporary.discard();
            return failToWrite(result);
        }
        if (!temporary.hasContent()) {
            return fail("ERROR: Writing %s failed.\n", temporary.path());
        }
        // Without this, a power cut after the renaming may leave an empty file in the place of the old one.
        if (const int error = temporary.flush(); error != 0) {
            return failToWrite(error);
        }
        if (!temporary.isAsLargeAs(source)) {
            temporary.discard();
            return failToWrite(EIO);
        }
        return true;
    }

    bool replaceTarget()
    {
        const auto replaced = identityOf(target);
        if (fileExists(target) && std::remove(target.c_str()) != 0) {
            return fail("ERROR: Cannot delete %s.\n", target);
        }
        if (fileExists(target)) {
            return fail("ERROR: Deleting %s failed.\n", target);
        }
        if (replaced) {
            driveFiles.forget(*replaced);
        }
        if (std::rename(temporary.path().c_str(), target.c_str()) != 0) {
            return fail("ERROR: Cannot rename %s.\n", temporary.path());
        }
        if (!fileExists(target)) {
            return fail("ERROR: Renaming of %s failed.\n", temporary.path());
        }
        driveFiles.noteWritten(location);
        return true;
    }

    __attribute__((format(printf, 2, 0))) void tell(const char* format, const std::string& path)
    {
        updater.sprint(messages.emplace_back(), format, path.c_str());
    }

    __attribute__((format(printf, 2, 0))) bool fail(const char* format, const std::string& path)
    {
        tell(format, path);
        return false;
    }

    bool failToWrite(int error)
    {
        updater.sprint(messages.emplace_back(), "ERROR: Cannot write %s. Error code: %u\n", temporary.path().c_str(),
                       static_cast<unsigned>(error));
        return false;
    }

    const ZoCTrellanUpdater& updater;
    const bool verbose;
    const std::string source;
    const std::string location;
    const std::string target;
    const TemporaryFile temporary;
    DriveFiles& driveFiles;
    std::vector<std::string>& messages;
};

}  // namespace

bool ZoCUpdateOperation::writeFileSystemElement(const ZoSUpdateFile& file, const ZoCString& location,
                                                std::vector<std::string>& messages)
{
    DriveFiles driveFiles(*assignment);
    return writeFileSystemElement(file, location, driveFiles, messages);
}

bool ZoCUpdateOperation::writeFileSystemElement(const ZoSUpdateFile& file, const ZoCString& location,
                                                DriveFiles& driveFiles, std::vector<std::string>& messages)
{
    messages.clear();
    const std::string source = assignment->getArchive().pathOf(file);
    return FileWriter(*updater, options->verbose, source, allText(location), driveFiles, messages).write();
}
