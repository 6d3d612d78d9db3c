// Whether the target has, after an update, what it was given.
#include <stdexcept>

#include "base/CellText.h"
#include "inspection/ElementFinder.h"
#include "inspection/ElementState.h"
#include "inspection/ZoCTrellanInspector.h"
#include "operation/ZoCUpdateOperation.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateBase;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInspection::ElementFinder;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

// Compares what can be compared.
ZoTVerification compare(const ZoSUpdateFile& file, const ZoSUpdateElement& found)
{
    const bool versionsKnown = file.version.getAsULong64() != 0 && found.version.getAsULong64() != 0;
    ZoTVerification result{};
    result.byChecksum = file.checksumCrc32 != ZoNUpdateArchive::notAvailable && found.isChecksumKnown();
    if (result.byChecksum) {
        result.fileChecksum = file.checksumCrc32;
        result.foundChecksum = found.checksumCrc32;
        result.verdict = file.checksumCrc32 == found.checksumCrc32 ? ZoTVerdict::AGREES : ZoTVerdict::DIFFERS;
    } else if (versionsKnown) {
        result.verdict = file.version == found.version ? ZoTVerdict::AGREES : ZoTVerdict::DIFFERS;
    }
    result.fileVersion = versionText(file.version);
    result.foundVersion = versionText(found.version);
    return result;
}

ZoTVerification verification(const ZoSUpdateFile& file, const ZoSUpdateElement* found,
                             const ZoCUpdateAssignment& assignment)
{
    if (found == nullptr) {
        ZoTVerification result{};
        result.verdict = ZoTVerdict::NOT_LISTED;
        return result;
    }
    ZoTVerification result = compare(file, *found);
    if (result.verdict == ZoTVerdict::DIFFERS && !assignment.isInUse(*found)) {
        result.verdict = ZoTVerdict::AFTER_RESTART;
    }
    return result;
}

}  // namespace

void ZoCTrellanInspector::verify(ZoITrellanInspector& rescanned)
{
    const auto* const other = dynamic_cast<const ZoCTrellanInspector*>(&rescanned);
    if (other == nullptr) {
        throw std::invalid_argument("ZoITrellanInspector: an inspector of another make");
    }
    const ElementFinder finder(other->updater.getInventory().getUpdateElementList());
    std::vector<ZoTVerification> results;
    for (const ZoSUpdateElement& each : updater.getInventory().getUpdateElementList()) {
        ZoTVerification& result = results.emplace_back();
        if (ZoNUpdateInspection::stateOf(each, updater) == ZoTState::UPDATED) {
            result = verification(*updater.getAssignment().fileOf(each), finder.find(each), updater.getAssignment());
        }
    }
    verifications = std::move(results);
}

const ZoTVerification& ZoCTrellanInspector::getVerification(unsigned index)
{
    if (index >= verifications.size()) {
        throw std::out_of_range("ZoITrellanInspector: no such element was verified");
    }
    return verifications[index];
}
