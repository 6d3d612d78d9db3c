// The rule that 32 bits hold the numbers of an entry.
#include <limits>

#include "inspection/Check.h"
#include "inspection/Rules.h"

using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;

namespace ZoNUpdateInspection {
namespace {

void checkNumber(Check& check, const Place& place, const json& value)
{
    if (!value.is_number_unsigned()) {
        return;
    }
    const auto number = static_cast<unsigned long long>(value);
    if (number > std::numeric_limits<std::uint32_t>::max()) {
        check.report("number-range", Check::Severity::WARNING, place,
                     "32 bits do not hold " + std::to_string(number) + ": state 4294967295 at most");
    }
}

// A number, or each of an array of them.
void checkMember(Check& check, const ZoSUpdateFile& file, const json& object, std::int32_t board, const char* member)
{
    if (!object.contains(member)) {
        return;
    }
    const json& value = object[member];
    checkNumber(check, {file, member, board}, value);
    std::size_t position = 0;
    for (const json& element : value) {  // what is no array has an empty range
        checkNumber(check, {file, member + ("/" + std::to_string(position++)), board}, element);
    }
}

void checkIds(Check& check, const ZoSUpdateFile& file, const json& object, std::int32_t board)
{
    for (const char* const member : {"id", "boardId", "hwCompatibilityId", "swCompatibilityId"}) {
        checkMember(check, file, object, board, member);
    }
}

}  // namespace

void checkNumbers(Check& check)
{
    for (const ZoSUpdateFile* const file : check.getFiles()) {
        const json& entry = file->jsonEntry;
        if (!entry.is_object()) {
            continue;
        }
        for (const char* const member : {"sequence", "checksumCrc32"}) {
            checkMember(check, *file, entry, -1, member);
        }
        checkIds(check, *file, entry, -1);
        std::int32_t board = 0;
        for (const json& object : entry["boards"]) {
            checkIds(check, *file, object, board++);
        }
    }
}

}  // namespace ZoNUpdateInspection
