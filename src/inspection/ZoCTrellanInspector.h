// ZoCTrellanInspector: the inspector behind the public interface.
//
// Keeps nothing but what it hands out: every answer is taken from the updater at the time of the question, or read then
// from a file or the target.
#pragma once

#include <memory>

#include "ZoITrellanInspector.h"
#include "base/ErrorListHandle.h"
#include "base/FindingList.h"
#include "updater/ZoCTrellanUpdater.h"

namespace ZoNUpdateArchive {
struct ZoSUpdateFile;
}
namespace ZoNUpdateInventory {
struct ZoSUpdateElement;
class InventoryRecord;
}  // namespace ZoNUpdateInventory
namespace ZoNUpdateInspection {
class FileKeys;
struct Explained;
}  // namespace ZoNUpdateInspection

class ZoCTrellanInspector : public ZoITrellanInspector {
public:
    // `updater` must outlive the inspector.
    explicit ZoCTrellanInspector(ZoCTrellanUpdater& updater);
    ~ZoCTrellanInspector() override;
    ZoCTrellanInspector(const ZoCTrellanInspector&) = delete;
    ZoCTrellanInspector& operator=(const ZoCTrellanInspector&) = delete;

    // The public interface; see there.
    unsigned getElementCount() override;
    const ZoNTrellanInspector::ZoTElement& getElement(unsigned index) override;
    const ZoNTrellanInspector::ZoTKeys& getElementKeys(unsigned index) override;
    unsigned getElementErrorCount(unsigned index) override;
    const ZoNTrellanInspector::ZoTError& getElementError(unsigned index, unsigned position) override;
    bool isTargetSupported() override;
    unsigned getPhaseCount() override;
    unsigned getFileCount() override;
    const ZoNTrellanInspector::ZoTFile& getFile(unsigned position) override;
    const ZoNTrellanInspector::ZoTFileHeader& readFileHeader(const std::string& path) override;
    void checkUsedFiles(ZoNTrellanInspector::ZoTReadProgress progress, void* context) override;
    unsigned getFindingCount() override;
    const ZoNTrellanInspector::ZoTFinding& getFinding(unsigned position) override;
    void verify(ZoITrellanInspector& rescanned) override;
    const ZoNTrellanInspector::ZoTVerification& getVerification(unsigned index) override;
    unsigned readFileKeys(unsigned position) override;
    const ZoNTrellanInspector::ZoTFileKeys& getFileKeys(unsigned number) override;
    ZoNTrellanInspector::ZoTDescription checkArchive(ZoNTrellanInspector::ZoTReadProgress progress,
                                                     void* context) override;
    unsigned getMemberCount(ZoNTrellanInspector::ZoTDescriptionObject object) override;
    const std::string& getMember(ZoNTrellanInspector::ZoTDescriptionObject object, unsigned position) override;
    const ZoNTrellanInspector::ZoTFileHeader& readFileHeaderWithProgress(const std::string& path,
                                                                         ZoNTrellanInspector::ZoTReadProgress progress,
                                                                         void* context) override;
    unsigned explainElement(unsigned index) override;
    unsigned explainFile(unsigned position) override;
    const ZoNTrellanInspector::ZoTCandidate& getCandidate(unsigned number) override;
    unsigned getUnmetCount(unsigned number) override;
    const ZoNTrellanInspector::ZoTUnmet& getUnmet(unsigned number, unsigned position) override;
    bool recordInventory() override;
    unsigned getScanErrorCount() override;
    const ZoNTrellanInspector::ZoTError& getScanError(unsigned position) override;
    unsigned getRecordedItemCount() override;
    const ZoNTrellanInspector::ZoTRecordedItem& getRecordedItem(unsigned position) override;
    const ZoNTrellanInspector::ZoTRecordedParameter& getRecordedParameter(unsigned item, unsigned position) override;
    unsigned getOmissionCount() override;
    const ZoNTrellanInspector::ZoTOmission& getOmission(unsigned position) override;
    unsigned readTarget() override;
    unsigned getTargetErrorCount() override;
    const ZoNTrellanInspector::ZoTError& getTargetError(unsigned position) override;
    unsigned getGeneralErrorCount() override;
    const ZoNTrellanInspector::ZoTError& getGeneralError(unsigned position) override;

private:
    void beginExplanation();

    // These throw std::out_of_range.
    const ZoNUpdateInventory::ZoSUpdateElement& elementAt(unsigned index) const;
    const ZoNUpdateArchive::ZoSUpdateFile& fileAt(unsigned position) const;

    // Empty before anything is recorded.
    const ZoNUpdateInventory::InventoryRecord& recorded() const;

    ZoCTrellanUpdater& updater;
    ZoNTrellanInspector::ZoTElement element{};
    ZoNTrellanInspector::ZoTKeys keys{};
    ZoNTrellanInspector::ZoTError error{};
    ZoNTrellanInspector::ZoTFile file{};
    ZoNTrellanInspector::ZoTFileHeader fileHeader{};
    std::string member;
    ZoNUpdateBase::FindingList findings;
    ZoNTrellanInspector::ZoTFinding finding{};
    std::vector<ZoNTrellanInspector::ZoTVerification> verifications;  // by the element's index
    std::unique_ptr<ZoNUpdateInspection::FileKeys> readKeys;
    ZoNTrellanInspector::ZoTFileKeys fileKeys{};
    std::unique_ptr<ZoNUpdateInspection::Explained> explained;
    ZoNTrellanInspector::ZoTCandidate candidate{};
    ZoNTrellanInspector::ZoTUnmet unmet{};
    std::unique_ptr<ZoNUpdateInventory::InventoryRecord> inventoryRecord;
    ZoNUpdateBase::ErrorListHandle scanErrors;  // null: none; one by one they take half the memory of records
    ZoNTrellanInspector::ZoTError scanError{};
    ZoNTrellanInspector::ZoTRecordedItem recordedItem{};
    ZoNTrellanInspector::ZoTRecordedParameter recordedParameter{};
    ZoNTrellanInspector::ZoTOmission omission{};
    ZoNUpdateBase::ErrorListHandle targetErrors;  // null: none
    ZoNTrellanInspector::ZoTError targetError{};
    ZoNTrellanInspector::ZoTError generalError{};
};
