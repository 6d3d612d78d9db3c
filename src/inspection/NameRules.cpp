// The rules about the names of update files.
#include <algorithm>
#include <filesystem>

#include "base/FileAccess.h"
#include "base/PlatformText.h"
#include "base/QuotedText.h"
#include "inspection/CharacterRules.h"
#include "inspection/Check.h"
#include "inspection/Rules.h"
#include "operation/PathChecks.h"

using namespace ZoNUpdateBase;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace ZoNUpdateInspection {
namespace {

namespace fs = std::filesystem;
using Severity = Check::Severity;

// The path without links, "." and ".."; empty when there is nothing at `path`.
fs::path resolved(const std::string& path)
{
    std::error_code error;
    return canNameFile(path) ? fs::canonical(path, error) : fs::path();
}

bool isBelow(const fs::path& folder, const fs::path& path)
{
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

// Where a link at `path` leads to that is not below `folder`; empty where none does.
fs::path outside(const fs::path& folder, const std::string& path)
{
    const fs::path found = resolved(path);
    return folder.empty() || found.empty() || isBelow(folder, found) ? fs::path() : found;
}

void checkFolder(Check& check, const fs::path& folder, const ZoSUpdateFile& file)
{
    const Place place{file, "name"};
    if (leavesFolder(allText(file.name))) {
        check.report("outside-archive", Severity::ERROR, place,
                     "the name leads out of the archive's folder: put the file into the folder and name it there");
        return;
    }
    if (const fs::path found = outside(folder, check.getArchive().pathOf(file)); !found.empty()) {
        check.report("outside-archive", Severity::WARNING, place,
                     "a link leads out of the archive's folder, to " + inQuotes(found.string()) +
                         ": put the file itself into the folder");
    }
}

}  // namespace

void checkNames(Check& check)
{
    const fs::path folder = resolved(check.getArchive().getPath());
    for (const ZoSUpdateFile* const file : check.getFiles()) {
        const Place place{*file, "name"};
        checkFolder(check, folder, *file);
        if (file->hasTargetPath) {
            checkShellCharacters(check, place, allText(file->name), check.getArchive().pathOf(*file));
        }
        checkControlCharacters(check, place, allText(file->name));
    }
}

void checkDescription(Check& check)
{
    const ZoCUpdateArchive& archive = check.getArchive();
    const std::string path = archive.descriptionPath();
    if (leavesFolder(path.substr(archive.getPath().size()))) {
        return;  // somebody has named it so
    }
    if (const fs::path found = outside(resolved(archive.getPath()), path); !found.empty()) {
        check.report("outside-archive", Severity::WARNING,
                     "a link leads out of the archive's folder to the description, to " + inQuotes(found.string()) +
                         ": put the description itself into the folder");
    }
}

}  // namespace ZoNUpdateInspection
