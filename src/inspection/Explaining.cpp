// What the inspector tells of how elements and entries fit one another.
#include <stdexcept>

#include "archive/ZoCUpdateArchive.h"
#include "inspection/Explanation.h"
#include "inspection/ZoCTrellanInspector.h"
#include "operation/ZoCUpdateOperation.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateInspection;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateAssignment::matchCriteria;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace {

const Explained::Candidate& candidateAt(const std::unique_ptr<Explained>& explained, unsigned number)
{
    if (!explained || number >= explained->candidates.size()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such candidate");
    }
    return explained->candidates[number];
}

}  // namespace

void ZoCTrellanInspector::beginExplanation()
{
    const ZoCUpdateArchive& archive = updater.getArchive();
    if (!explained || explained->generation != archive.getGeneration()) {
        explained = std::make_unique<Explained>(archive.getUpdateFileList(), archive.getGeneration());
    }
    explained->candidates.clear();
}

unsigned ZoCTrellanInspector::explainElement(unsigned index)
{
    const ZoSUpdateElement& source = elementAt(index);
    beginExplanation();
    for (Comparison& comparison : explained->explanation.compare(source)) {
        explained->candidates.push_back({index, std::move(comparison)});
    }
    return static_cast<unsigned>(explained->candidates.size());
}

unsigned ZoCTrellanInspector::explainFile(unsigned position)
{
    fileAt(position);  // there is such a file
    beginExplanation();
    std::uint32_t index = 0;
    for (const ZoSUpdateElement& source : updater.getInventory().getUpdateElementList()) {
        if (explained->explanation.isForType(source, position)) {
            explained->candidates.push_back({index, explained->explanation.compare(source, position)});
        }
        ++index;
    }
    return static_cast<unsigned>(explained->candidates.size());
}

const ZoTCandidate& ZoCTrellanInspector::getCandidate(unsigned number)
{
    const auto& source = candidateAt(explained, number);
    const std::int32_t given = elementAt(source.element).updateFileIndex;
    candidate.element = source.element;
    candidate.filePosition = static_cast<std::int32_t>(source.comparison.file);
    candidate.board = source.comparison.board;
    candidate.isGiven = given == candidate.filePosition;
    candidate.takenBy = source.comparison.unmet.empty() && !candidate.isGiven ? given : -1;
    return candidate;
}

unsigned ZoCTrellanInspector::getUnmetCount(unsigned number)
{
    return static_cast<unsigned>(candidateAt(explained, number).comparison.unmet.size());
}

const ZoTUnmet& ZoCTrellanInspector::getUnmet(unsigned number, unsigned position)
{
    const auto& source = candidateAt(explained, number);
    if (position >= source.comparison.unmet.size()) {
        throw std::out_of_range("ZoITrellanInspector: there is no such criterion");
    }
    const auto criterion = source.comparison.unmet[position];
    unmet.criterion = matchCriteria[criterion].name;
    unmet.expected = explained->explanation.expected(source.comparison, criterion);
    unmet.actual = Explanation::actual(elementAt(source.element), criterion);
    return unmet;
}
