// EmptyInspector: an inspector of a host's own making that knows nothing. A test overrides what it is to know.
#pragma once

#include <stdexcept>
#include <string>

#include "ZoITrellanInspector.h"

class EmptyInspector : public ZoITrellanInspector {
public:
    unsigned getElementCount() override { return 0; }
    const ZoNTrellanInspector::ZoTElement& getElement(unsigned) override { throw std::out_of_range("element"); }
    const ZoNTrellanInspector::ZoTKeys& getElementKeys(unsigned) override { throw std::out_of_range("element"); }
    unsigned getElementErrorCount(unsigned) override { return 0; }
    const ZoNTrellanInspector::ZoTError& getElementError(unsigned, unsigned) override
    {
        throw std::out_of_range("error");
    }
    bool isTargetSupported() override { return false; }
    unsigned getPhaseCount() override { return 0; }
    unsigned getFileCount() override { return 0; }
    const ZoNTrellanInspector::ZoTFile& getFile(unsigned) override { throw std::out_of_range("file"); }
    const ZoNTrellanInspector::ZoTFileHeader& readFileHeader(const std::string&) override
    {
        throw std::out_of_range("file");
    }
    void checkUsedFiles(ZoNTrellanInspector::ZoTReadProgress, void*) override {}
    unsigned getFindingCount() override { return 0; }
    const ZoNTrellanInspector::ZoTFinding& getFinding(unsigned) override { throw std::out_of_range("finding"); }
    void verify(ZoITrellanInspector&) override {}
    const ZoNTrellanInspector::ZoTVerification& getVerification(unsigned) override
    {
        throw std::out_of_range("element");
    }
    unsigned readFileKeys(unsigned) override { return 0; }
    const ZoNTrellanInspector::ZoTFileKeys& getFileKeys(unsigned) override { throw std::out_of_range("board object"); }
    ZoNTrellanInspector::ZoTDescription checkArchive(ZoNTrellanInspector::ZoTReadProgress, void*) override
    {
        return ZoNTrellanInspector::ZoTDescription::READ;
    }
    unsigned explainElement(unsigned) override { return 0; }
    unsigned explainFile(unsigned) override { return 0; }
    const ZoNTrellanInspector::ZoTCandidate& getCandidate(unsigned) override { throw std::out_of_range("candidate"); }
    unsigned getUnmetCount(unsigned) override { return 0; }
    const ZoNTrellanInspector::ZoTUnmet& getUnmet(unsigned, unsigned) override { throw std::out_of_range("criterion"); }
    unsigned getMemberCount(ZoNTrellanInspector::ZoTDescriptionObject) override { return 0; }
    const std::string& getMember(ZoNTrellanInspector::ZoTDescriptionObject, unsigned) override
    {
        throw std::out_of_range("member");
    }
    const ZoNTrellanInspector::ZoTFileHeader& readFileHeaderWithProgress(const std::string&,
                                                                         ZoNTrellanInspector::ZoTReadProgress,
                                                                         void*) override
    {
        throw std::out_of_range("file");
    }
    bool recordInventory() override { return false; }
    unsigned getScanErrorCount() override { return 0; }
    const ZoNTrellanInspector::ZoTError& getScanError(unsigned) override { throw std::out_of_range("scan error"); }
    unsigned getRecordedItemCount() override { return 0; }
    const ZoNTrellanInspector::ZoTRecordedItem& getRecordedItem(unsigned) override { throw std::out_of_range("item"); }
    const ZoNTrellanInspector::ZoTRecordedParameter& getRecordedParameter(unsigned, unsigned) override
    {
        throw std::out_of_range("parameter");
    }
    unsigned getOmissionCount() override { return 0; }
    const ZoNTrellanInspector::ZoTOmission& getOmission(unsigned) override { throw std::out_of_range("omission"); }
    unsigned readTarget() override { return 0; }
    unsigned getTargetErrorCount() override { return 0; }
    const ZoNTrellanInspector::ZoTError& getTargetError(unsigned) override { throw std::out_of_range("error"); }
    unsigned getGeneralErrorCount() override { return 0; }
    const ZoNTrellanInspector::ZoTError& getGeneralError(unsigned) override { throw std::out_of_range("error"); }
};
