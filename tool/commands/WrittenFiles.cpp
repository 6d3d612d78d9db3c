// Files are told apart by device and number, as the system has them, and never by their paths.
#include "tool/commands/WrittenFiles.h"

#include <stdlib.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/coverage/TargetNames.h"

namespace TrellanTool {

namespace {

struct Writing {
    const char* option;
    std::optional<std::string> Arguments::*file;
    bool isWholeBefore;  // nothing is written before all that it comes from has been read
};

constexpr Writing events = {"--events", &Arguments::eventsFile, false};
constexpr Writing trace = {"--trace", &Arguments::traceFile, false};
constexpr Writing result = {"--output", &Arguments::outputFile, true};
constexpr Writing page = {"--html", &Arguments::htmlFile, false};

using Identity = std::pair<dev_t, ino_t>;

// Nothing where there is no regular file: what else there is holds nothing that could be lost.
std::optional<Identity> identityOf(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    return Identity{status.st_dev, status.st_ino};
}

// Those that are asked for and are there already.
class WrittenFiles {
public:
    WrittenFiles(const Arguments& arguments, const std::vector<Writing>& writings) : command(arguments.command)
    {
        for (const Writing& writing : writings) {
            const std::optional<std::string>& path = arguments.*writing.file;
            if (const auto identity = path ? identityOf(*path) : std::nullopt) {
                files.push_back({writing, *path, *identity});
            }
        }
    }

    bool areNone() const { return files.empty(); }

    void keepFrom(const std::string& path, const char* what) const { keepFrom(path, what, false); }

    void keepFromDescription(const Arguments& arguments) const
    {
        const auto& options = arguments.options;
        keepFrom(options.archivePath + "/" + options.descriptionFileName, "the archive's description", true);
    }

private:
    struct File {
        Writing writing;
        std::string path;
        Identity identity;
    };

    void keepFrom(const std::string& path, const char* what, bool mayBeReplaced) const
    {
        const auto identity = areNone() ? std::nullopt : identityOf(path);
        for (const File& file : files) {
            if (identity == file.identity && !(mayBeReplaced && file.writing.isWholeBefore)) {
                throw UsageError(std::string(file.writing.option) + ": " + file.path + " is " + what, command);
            }
        }
    }

    const Command* const command;
    std::vector<File> files;
};

bool beginsAsTrace(const std::filesystem::path& path)
{
    constexpr std::string_view begin = R"({"call":)";
    std::string read(begin.size(), ' ');
    std::ifstream file(path, std::ios::binary);
    file.read(read.data(), static_cast<std::streamsize>(read.size()));
    read.resize(static_cast<std::size_t>(file.gcount()));
    return begin.starts_with(read);
}

// A trace is begun before the archive is read, so that its files cannot be known: what is in its folder and no trace
// may be one of them.
void keepTraceFromFolder(const Arguments& arguments)
{
    if (!arguments.traceFile || !identityOf(*arguments.traceFile)) {
        return;
    }
    std::error_code fault;
    const auto folder = std::filesystem::canonical(arguments.options.archivePath, fault);
    const auto file = std::filesystem::canonical(*arguments.traceFile, fault);
    const bool isInFolder =
        !fault && std::mismatch(folder.begin(), folder.end(), file.begin(), file.end()).first == folder.end();
    if (isInFolder && !beginsAsTrace(file)) {
        throw UsageError("--trace: " + *arguments.traceFile + " is in the folder of the archive, and no trace",
                         arguments.command);
    }
}

std::string targetOf(const Arguments& arguments)
{
    const char* const named = ::getenv("TRELLAN_TARGET");
    return arguments.targetFile.value_or(named == nullptr ? "" : named);
}

}  // namespace

void keepFromWriting(const Arguments& arguments)
{
    const WrittenFiles written(arguments, {events, trace, result, page});
    if (written.areNone()) {
        return;
    }
    const Command& command = *arguments.command;
    if (command.has(TARGET)) {
        written.keepFrom(targetOf(arguments), "the target file");
    }
    if (command.has(COVERS)) {
        for (const NamedTarget& target : targetsNamed(arguments.operands)) {
            written.keepFrom(target.name, "a target file");
        }
    }
    if (command.has(ARCHIVE)) {
        written.keepFromDescription(arguments);
        keepTraceFromFolder(arguments);
    }
    written.keepFrom(arguments.planFile.value_or(""), "the plan");
}

void keepFromWriting(const Arguments& arguments, ZoITrellanInspector& archive)
{
    const WrittenFiles written(arguments, {events, trace, result, page});
    for (unsigned i = 0; !written.areNone() && i < archive.getFileCount(); ++i) {
        written.keepFrom(archive.getFile(i).path, "a file of the archive");
    }
}

}  // namespace TrellanTool
