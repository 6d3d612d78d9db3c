// The rules that hold an entry against the header of its file.
#include <string_view>

#include "assignment/MatchCriteria.h"
#include "base/CellText.h"
#include "inspection/BoardObjects.h"
#include "inspection/Check.h"
#include "inspection/FileContent.h"
#include "inspection/Rules.h"

using namespace ZoNUpdateArchive;
using namespace ZoNUpdateAssignment;
using ZoNJson::json;

namespace ZoNUpdateInspection {
namespace {

void checkVersion(Check& check, const ZoSUpdateFile& file, const FileHeader& header)
{
    const bool isStated = file.jsonEntry.contains("version") && file.jsonEntry["version"].is_string();
    if (!isStated || !header.version || header.version->getAsULong64() == 0 || *header.version == file.version) {
        return;
    }
    check.report("file-version", Check::Severity::WARNING, {file, "version"},
                 "the entry states version " + ZoNUpdateBase::versionText(file.version) +
                     ", but the file's header says " + ZoNUpdateBase::versionText(*header.version) +
                     ", which the device takes over: state that, or put the right file in its place");
}

// Compatibility ids of the entry against the range that the header states for them.
class RangeCheck {
public:
    RangeCheck(Check& check, const ZoSUpdateFile& file, MatchCriterion::Index criterion, std::uint32_t min,
               std::uint32_t max)
        : check(check), file(file), property(matchCriteria[criterion].property), min(min), max(max)
    {
    }

    void checkBoards()
    {
        bool wantsEntry = false;  // what a board object leaves out is the entry's, which is looked at once
        for (const BoardObject& board : boardObjectsOf(file)) {
            if (board.decidesFor.empty()) {
                continue;
            }
            if (board.position >= 0 && board.json->contains(property)) {
                checkValues((*board.json)[property], board.position);
            } else {
                wantsEntry = true;
            }
        }
        if (!wantsEntry) {
            return;
        }
        if (file.jsonEntry.contains(property)) {
            checkValues(file.jsonEntry[property], -1);
        } else if (min != 0) {
            check.report("compatibility", Check::Severity::WARNING, {file, ""},
                         std::string("\"") + property +
                             "\" is left out, which means 0, but the file's header accepts " + range() +
                             ": state the ids that the file is for");
        }
    }

private:
    void checkValues(const json& values, std::int32_t board)
    {
        if (!values.is_array()) {
            checkValue(values, {file, property, board});
            return;
        }
        std::size_t position = 0;
        for (const json& value : values) {
            checkValue(value, {file, property + ("/" + std::to_string(position++)), board});
        }
    }

    void checkValue(const json& value, const Place& place)
    {
        const auto id = static_cast<unsigned long long>(value);
        if (id < min || id > max) {
            check.report("compatibility", Check::Severity::WARNING, place,
                         "the id " + std::to_string(id) + " is outside of what the file's header accepts, " + range() +
                             ": take it away, or put the right file in its place");
        }
    }

    std::string range() const { return std::to_string(min) + " to " + std::to_string(max); }

    Check& check;
    const ZoSUpdateFile& file;
    const std::string property;
    const std::uint32_t min;
    const std::uint32_t max;
};

}  // namespace

void checkHeader(Check& check, const ZoSUpdateFile& file, const FileHeader& header)
{
    checkVersion(check, file, header);
    if (statesRange(header.minHwCompatibilityId, header.maxHwCompatibilityId)) {
        RangeCheck(check, file, MatchCriterion::hwCompatibilityId, header.minHwCompatibilityId,
                   header.maxHwCompatibilityId)
            .checkBoards();
    }
    if (statesRange(header.minSwCompatibilityId, header.maxSwCompatibilityId)) {
        RangeCheck(check, file, MatchCriterion::swCompatibilityId, header.minSwCompatibilityId,
                   header.maxSwCompatibilityId)
            .checkBoards();
    }
}

}  // namespace ZoNUpdateInspection
