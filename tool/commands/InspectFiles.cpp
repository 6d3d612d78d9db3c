#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <ostream>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/InspectedFiles.h"
#include "tool/update/CheckProgress.h"

namespace TrellanTool {

namespace {

// Reads the files one by one, and shows how far it is with all of them.
class Reading {
public:
    Reading(ZoITrellanInspector& inspector, const std::vector<std::string>& paths, std::ostream& err)
        : inspector(inspector),
          progress(err, ::isatty(STDERR_FILENO) == 1, CheckProgress::Clock::now(), "reading the files")
    {
        for (const std::string& path : paths) {
            bytesOfAll += sizeOf(path);
        }
    }

    InspectedFile read(const std::string& path)
    {
        const auto report = [](void* reading, std::uint64_t bytes, std::uint64_t) {
            static_cast<Reading*>(reading)->report(bytes);
        };
        InspectedFile file{path, inspector.readFileHeaderWithProgress(path, report, this)};
        bytesBefore += sizeOf(path);
        return file;
    }

private:
    static std::uint64_t sizeOf(const std::string& path)
    {
        struct stat found;
        return ::stat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode) ? static_cast<std::uint64_t>(found.st_size)
                                                                           : 0;
    }

    void report(std::uint64_t bytes)
    {
        const std::uint64_t read = bytesBefore + bytes;
        progress.report(read, std::max(read, bytesOfAll), CheckProgress::Clock::now());
    }

    ZoITrellanInspector& inspector;
    CheckProgress progress;
    std::uint64_t bytesOfAll = 0;
    std::uint64_t bytesBefore = 0;  // those of the files that were read whole
};

std::vector<InspectedFile> inspected(const Arguments& arguments, const Streams& streams)
{
    LibrarySession session(arguments, streams.err);
    Reading reading(session.inspector(), arguments.operands, streams.err);
    std::vector<InspectedFile> files;
    for (const std::string& path : arguments.operands) {
        files.push_back(reading.read(path));
    }
    return files;
}

void writeDocument(std::ostream& out, const std::vector<InspectedFile>& files)
{
    DocumentWriter writer(out, "inspect");
    writer.list("files", static_cast<unsigned>(files.size()), [&](unsigned i) { return inspectedRecord(files[i]); });
    writer.end();
}

}  // namespace

int inspectFiles(const Arguments& arguments, const Streams& streams)
{
    const std::vector<InspectedFile> files = inspected(arguments, streams);
    int status = SUCCESS;
    for (const InspectedFile& file : files) {
        if (!file.isReadable()) {
            say(streams.err, file.path + ": " + file.header.problem);
            status = FAILURE;
        }
    }
    if (arguments.json) {
        writeDocument(streams.out, files);
    } else if (std::any_of(files.begin(), files.end(), [](const auto& file) { return file.isReadable(); })) {
        streams.out << inspectedText(files);
    }
    return status;
}

}  // namespace TrellanTool
