// The rules about the paths that files get on the flash drive, each by itself.
#include <set>

#include "base/QuotedText.h"
#include "inspection/CharacterRules.h"
#include "inspection/Check.h"
#include "inspection/Demands.h"
#include "inspection/Rules.h"
#include "operation/PathChecks.h"

namespace ZoNUpdateInspection {
namespace {

void checkTargetPath(Check& check, const Place& place, const std::string& path)
{
    if (!namesFile(path)) {
        check.report("path-escape", Check::Severity::ERROR, place,
                     "the path " + ZoNUpdateBase::inQuotes(path) +
                         " names no file on the flash drive: let it end in the file's name");
    } else if (!isOnDrive(path)) {
        check.report(
            "path-escape", Check::Severity::ERROR, place,
            "the path " + ZoNUpdateBase::inQuotes(path) + " may lead out of the flash drive: state it without \"..\"");
    }
    checkShellCharacters(check, place, path, std::string(driveRoot) + "/" + path);
    checkControlCharacters(check, place, path);
}

}  // namespace

void checkTargetPaths(Check& check)
{
    for (const auto* const file : check.getFiles()) {
        if (!file->hasTargetPath) {
            continue;
        }
        std::set<std::int32_t> seen;  // several board objects may share the entry's path
        forEachDemand(*file, [&](const Demand& demand) {
            if (seen.insert(demand.pathBoard).second) {
                checkTargetPath(check, {*file, "targetPath", demand.pathBoard}, statedPath(*file, *demand.object));
            }
        });
    }
}

}  // namespace ZoNUpdateInspection
