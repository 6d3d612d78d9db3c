// The second interface grows at its ends only: hosts that are not compiled again find its operations in their slots and
// the members of its records where they were, on x86-64 Linux with the strings of libstdc++ that take 32 bytes.
#include <gtest/gtest.h>

#include <cstddef>

#include "ZoITrellanInspector.h"
#include "support/Slots.h"

using namespace ZoNTrellanInspector;

TEST(InspectorLayout, KeepsTheOperationsInTheirSlots)
{
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getElementCount), 3);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getElement), 4);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getElementKeys), 5);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getElementErrorCount), 6);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getElementError), 7);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::isTargetSupported), 8);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getPhaseCount), 9);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getFileCount), 10);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getFile), 11);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::readFileHeader), 12);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::checkUsedFiles), 13);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getFindingCount), 14);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getFinding), 15);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::verify), 16);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getVerification), 17);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::readFileKeys), 18);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getFileKeys), 19);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::checkArchive), 20);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getMemberCount), 21);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getMember), 22);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::readFileHeaderWithProgress), 23);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::explainElement), 24);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::explainFile), 25);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getCandidate), 26);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getUnmetCount), 27);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getUnmet), 28);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::recordInventory), 29);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getScanErrorCount), 30);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getScanError), 31);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getRecordedItemCount), 32);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getRecordedItem), 33);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getRecordedParameter), 34);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getOmissionCount), 35);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getOmission), 36);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::readTarget), 37);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getTargetErrorCount), 38);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getTargetError), 39);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getGeneralErrorCount), 40);
    EXPECT_EQ(slotOf(&ZoITrellanInspector::getGeneralError), 41);
}

TEST(InspectorLayout, KeepsTheMembersOfAnElement)
{
    EXPECT_EQ(offsetof(ZoTElement, index), 0u);
    EXPECT_EQ(offsetof(ZoTElement, name), 8u);
    EXPECT_EQ(offsetof(ZoTElement, displayedSerialNumber), 40u);
    EXPECT_EQ(offsetof(ZoTElement, boardAddress), 72u);
    EXPECT_EQ(offsetof(ZoTElement, isListed), 104u);
    EXPECT_EQ(offsetof(ZoTElement, hasInstalledChecksum), 105u);
    EXPECT_EQ(offsetof(ZoTElement, installedChecksum), 108u);
    EXPECT_EQ(offsetof(ZoTElement, filePosition), 112u);
    EXPECT_EQ(offsetof(ZoTElement, isDowngrade), 116u);
    EXPECT_EQ(offsetof(ZoTElement, state), 120u);
    EXPECT_EQ(offsetof(ZoTElement, blocksUpdate), 124u);
    EXPECT_EQ(offsetof(ZoTElement, need), 128u);
}

TEST(InspectorLayout, KeepsTheMembersOfAnElementsKeys)
{
    EXPECT_EQ(offsetof(ZoTKeys, boardType), 0u);
    EXPECT_EQ(offsetof(ZoTKeys, hasBoardVariant), 32u);
    EXPECT_EQ(offsetof(ZoTKeys, boardVariant), 40u);
    EXPECT_EQ(offsetof(ZoTKeys, boardId), 72u);
    EXPECT_EQ(offsetof(ZoTKeys, hwCompatibilityId), 76u);
    EXPECT_EQ(offsetof(ZoTKeys, swCompatibilityId), 80u);
    EXPECT_EQ(offsetof(ZoTKeys, isFile), 84u);
    EXPECT_EQ(offsetof(ZoTKeys, id), 88u);
    EXPECT_EQ(offsetof(ZoTKeys, targetPath), 96u);
}

TEST(InspectorLayout, KeepsTheMembersOfAnError)
{
    EXPECT_EQ(offsetof(ZoTError, hasCode), 0u);
    EXPECT_EQ(offsetof(ZoTError, code), 4u);
    EXPECT_EQ(offsetof(ZoTError, text), 8u);
    EXPECT_EQ(offsetof(ZoTError, originNode), 40u);
    EXPECT_EQ(offsetof(ZoTError, time), 48u);
    EXPECT_EQ(offsetof(ZoTError, mainModule), 56u);
    EXPECT_EQ(offsetof(ZoTError, subModule), 60u);
    EXPECT_EQ(offsetof(ZoTError, function), 64u);
    EXPECT_EQ(offsetof(ZoTError, line), 96u);
}

TEST(InspectorLayout, KeepsTheMembersOfAFile)
{
    EXPECT_EQ(offsetof(ZoTFile, entry), 0u);
    EXPECT_EQ(offsetof(ZoTFile, name), 8u);
    EXPECT_EQ(offsetof(ZoTFile, path), 40u);
    EXPECT_EQ(offsetof(ZoTFile, sequence), 72u);
    EXPECT_EQ(offsetof(ZoTFile, isUpgrade), 76u);
    EXPECT_EQ(offsetof(ZoTFile, version), 80u);
    EXPECT_EQ(offsetof(ZoTFile, hasChecksum), 112u);
    EXPECT_EQ(offsetof(ZoTFile, checksum), 116u);
    EXPECT_EQ(offsetof(ZoTFile, statesChecksum), 120u);
    EXPECT_EQ(offsetof(ZoTFile, isForFlashDrive), 121u);
    EXPECT_EQ(offsetof(ZoTFile, elementCount), 124u);
}

TEST(InspectorLayout, KeepsTheMembersOfAFilesKeys)
{
    EXPECT_EQ(offsetof(ZoTFileKeys, board), 0u);
    EXPECT_EQ(offsetof(ZoTFileKeys, decidesFor), 8u);
    EXPECT_EQ(offsetof(ZoTFileKeys, boardType), 32u);
    EXPECT_EQ(offsetof(ZoTFileKeys, boardVariant), 64u);
    EXPECT_EQ(offsetof(ZoTFileKeys, boardId), 96u);
    EXPECT_EQ(offsetof(ZoTFileKeys, hwCompatibilityId), 128u);
    EXPECT_EQ(offsetof(ZoTFileKeys, swCompatibilityId), 160u);
    EXPECT_EQ(offsetof(ZoTFileKeys, isFile), 192u);
    EXPECT_EQ(offsetof(ZoTFileKeys, id), 200u);
    EXPECT_EQ(offsetof(ZoTFileKeys, targetPath), 232u);
}

TEST(InspectorLayout, KeepsTheMembersOfAHeader)
{
    EXPECT_EQ(offsetof(ZoTFileHeader, kind), 0u);
    EXPECT_EQ(offsetof(ZoTFileHeader, hasChecksum), 4u);
    EXPECT_EQ(offsetof(ZoTFileHeader, checksum), 8u);
    EXPECT_EQ(offsetof(ZoTFileHeader, version), 16u);
    EXPECT_EQ(offsetof(ZoTFileHeader, hasHwCompatibilityRange), 48u);
    EXPECT_EQ(offsetof(ZoTFileHeader, minHwCompatibilityId), 52u);
    EXPECT_EQ(offsetof(ZoTFileHeader, maxHwCompatibilityId), 56u);
    EXPECT_EQ(offsetof(ZoTFileHeader, hasSwCompatibilityRange), 60u);
    EXPECT_EQ(offsetof(ZoTFileHeader, minSwCompatibilityId), 64u);
    EXPECT_EQ(offsetof(ZoTFileHeader, maxSwCompatibilityId), 68u);
    EXPECT_EQ(offsetof(ZoTFileHeader, problem), 72u);
}

TEST(InspectorLayout, KeepsTheMembersOfAFinding)
{
    EXPECT_EQ(offsetof(ZoTFinding, rule), 0u);
    EXPECT_EQ(offsetof(ZoTFinding, severity), 32u);
    EXPECT_EQ(offsetof(ZoTFinding, entry), 36u);
    EXPECT_EQ(offsetof(ZoTFinding, board), 40u);
    EXPECT_EQ(offsetof(ZoTFinding, name), 48u);
    EXPECT_EQ(offsetof(ZoTFinding, pointer), 80u);
    EXPECT_EQ(offsetof(ZoTFinding, message), 112u);
    EXPECT_EQ(offsetof(ZoTFinding, isInDescription), 144u);
    EXPECT_EQ(offsetof(ZoTFinding, coveredBy), 152u);
    EXPECT_EQ(offsetof(ZoTFinding, hasExample), 176u);
    EXPECT_EQ(offsetof(ZoTFinding, example), 184u);
}

TEST(InspectorLayout, KeepsTheMembersOfAVerification)
{
    EXPECT_EQ(offsetof(ZoTVerification, verdict), 0u);
    EXPECT_EQ(offsetof(ZoTVerification, byChecksum), 4u);
    EXPECT_EQ(offsetof(ZoTVerification, fileChecksum), 8u);
    EXPECT_EQ(offsetof(ZoTVerification, foundChecksum), 12u);
    EXPECT_EQ(offsetof(ZoTVerification, fileVersion), 16u);
    EXPECT_EQ(offsetof(ZoTVerification, foundVersion), 48u);
}

TEST(InspectorLayout, KeepsTheMembersOfACandidate)
{
    EXPECT_EQ(offsetof(ZoTCandidate, element), 0u);
    EXPECT_EQ(offsetof(ZoTCandidate, filePosition), 4u);
    EXPECT_EQ(offsetof(ZoTCandidate, board), 8u);
    EXPECT_EQ(offsetof(ZoTCandidate, isGiven), 12u);
    EXPECT_EQ(offsetof(ZoTCandidate, takenBy), 16u);
}

TEST(InspectorLayout, KeepsTheMembersOfAnUnmetCriterion)
{
    EXPECT_EQ(offsetof(ZoTUnmet, criterion), 0u);
    EXPECT_EQ(offsetof(ZoTUnmet, expected), 32u);
    EXPECT_EQ(offsetof(ZoTUnmet, actual), 64u);
}

TEST(InspectorLayout, KeepsTheMembersOfARecord)
{
    EXPECT_EQ(offsetof(ZoTRecordedItem, level), 0u);
    EXPECT_EQ(offsetof(ZoTRecordedItem, id), 8u);
    EXPECT_EQ(offsetof(ZoTRecordedItem, parameterCount), 40u);
    EXPECT_EQ(offsetof(ZoTRecordedParameter, address), 0u);
    EXPECT_EQ(offsetof(ZoTRecordedParameter, isText), 32u);
    EXPECT_EQ(offsetof(ZoTRecordedParameter, text), 40u);
    EXPECT_EQ(offsetof(ZoTRecordedParameter, number), 72u);
    EXPECT_EQ(offsetof(ZoTOmission, item), 0u);
    EXPECT_EQ(offsetof(ZoTOmission, parameter), 32u);
    EXPECT_EQ(offsetof(ZoTOmission, reason), 64u);
}
