// The inspector's check of the update files, and what it has found.
#include <stdexcept>

#include "inspection/Check.h"
#include "inspection/ElementState.h"
#include "inspection/Rules.h"
#include "inspection/ZoCTrellanInspector.h"
#include "operation/ZoCUpdateOperation.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateInspection;

namespace {

// The files of the elements that will be updated, in the order of the description.
Check::Files usedFiles(const ZoCTrellanUpdater& updater)
{
    const auto& files = updater.getArchive().getUpdateFileList();
    std::vector<bool> isUsed(files.size());
    for (const auto& element : updater.getInventory().getUpdateElementList()) {
        if (stateOf(element, updater) == ZoTState::UPDATE) {
            isUsed[static_cast<std::size_t>(updater.getAssignment().fileOf(element) - files.data())] = true;
        }
    }
    Check::Files used;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (isUsed[i]) {
            used.push_back(&files[i]);
        }
    }
    return used;
}

}  // namespace

void ZoCTrellanInspector::checkUsedFiles(ZoTReadProgress progress, void* context)
{
    findings = ZoNUpdateBase::FindingList();
    Check check(updater.getArchive(), usedFiles(updater));
    checkNames(check);
    checkTargetPaths(check);
    checkPathCollisions(check);
    checkContents(check, Depth::used, [&](std::uint64_t read, std::uint64_t all) {
        if (progress != nullptr) {
            progress(context, read, all);
        }
    });
    findings = check.takeFindings();
}

unsigned ZoCTrellanInspector::getFindingCount()
{
    return static_cast<unsigned>(findings.size());
}

const ZoTFinding& ZoCTrellanInspector::getFinding(unsigned position)
{
    if (position >= findings.size()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such finding");
    }
    findings.get(position, finding);
    return finding;
}
