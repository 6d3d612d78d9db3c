// The table of criteria, what an element has by each of them, and the walk over the table that decides.
#include "assignment/MatchCriteria.h"

#include <algorithm>

#include "base/PlatformText.h"

using namespace ZoNUpdateBase;
using ZoNJson::json;
using ZoNUpdateArchive::ZoSUpdateFile;
using ZoNUpdateInventory::ZoSUpdateElement;

namespace ZoNUpdateAssignment {
namespace {

const json* orNothing(const Requirements&)
{
    return nullptr;
}

const json* orNull(const Requirements&)
{
    static const json null;
    return &null;
}

const json* orZero(const Requirements&)
{
    static const json zero(0U);
    return &zero;
}

const json* orThePath(const Requirements& requirements)
{
    return &requirements.getPathOtherwise();
}

const char* kindName(bool isFile)
{
    return isFile ? "file" : "element";
}

const json* kindOfTheFile(const Requirements& requirements)
{
    static const json file(kindName(true));
    static const json element(kindName(false));
    return requirements.getFile().hasTargetPath ? &file : &element;
}

using Actual = std::optional<MatchValue>;

Actual variantOf(const ZoSUpdateElement& element)
{
    return element.variant.isEmpty() ? MatchValue() : MatchValue(allText(element.variant));
}

Actual idOf(const ZoSUpdateElement& element)
{
    return element.isFileSystemElement ? Actual() : MatchValue(element.id);
}

bool takesAnyPath(const ZoSUpdateElement& element)
{
    static const ZoCString wildcard("*");
    return element.location == wildcard;
}

Actual pathOf(const ZoSUpdateElement& element)
{
    const bool hasPath = element.isFileSystemElement && !takesAnyPath(element);
    return hasPath ? MatchValue(allText(element.location)) : Actual();
}

// The property as a key, made once.
const std::string& keyOf(const MatchCriterion& criterion)
{
    static const auto keys = [] {
        std::array<std::string, MatchCriterion::count> made;
        std::transform(matchCriteria.begin(), matchCriteria.end(), made.begin(), [](const MatchCriterion& each) {
            return std::string(each.property != nullptr ? each.property : "");
        });
        return made;
    }();
    return keys[static_cast<std::size_t>(&criterion - matchCriteria.data())];
}

// Null when the object does not have the property.
const json* memberOf(const json& object, const MatchCriterion& criterion)
{
    const std::string& key = keyOf(criterion);
    return object.contains(key) ? &object[key] : nullptr;
}

}  // namespace

// NOLINTNEXTLINE(cert-err58-cpp): the compiler computes it
constinit const std::array<MatchCriterion, MatchCriterion::count> matchCriteria{{
    {"boardType", "boardType", StatedAs::list, orNothing,
     [](const ZoSUpdateElement& element) -> Actual { return MatchValue(allText(element.boardType)); }},
    {"boardVariant", "boardVariant", StatedAs::list, orNull, variantOf},
    {"boardId", "boardId", StatedAs::list, orZero,
     [](const ZoSUpdateElement& element) -> Actual { return MatchValue(element.productId); }},
    {"kind", nullptr, StatedAs::text, kindOfTheFile,
     [](const ZoSUpdateElement& element) -> Actual { return MatchValue(kindName(element.isFileSystemElement)); }},
    {"id", "id", StatedAs::number, orNothing, idOf},
    {"targetPath", "targetPath", StatedAs::text, orThePath, pathOf},
    {"hwCompatibilityId", "hwCompatibilityId", StatedAs::list, orZero,
     [](const ZoSUpdateElement& element) -> Actual { return MatchValue(element.hwCompatibilityId); }},
    {"swCompatibilityId", "swCompatibilityId", StatedAs::list, orZero,
     [](const ZoSUpdateElement& element) -> Actual { return MatchValue(element.swCompatibilityId); }},
}};

std::optional<MatchValue> matchValueOf(const json& value)
{
    if (value.is_null()) {
        return std::optional<MatchValue>(std::in_place);
    }
    if (value.is_string()) {
        return MatchValue(std::string(value));
    }
    return value.is_number_unsigned() ? Actual(static_cast<unsigned long long>(value)) : std::nullopt;
}

const json* Requirements::expected(const MatchCriterion& criterion) const
{
    if (criterion.property != nullptr) {
        if (const json* const own = memberOf(board, criterion)) {
            return own;
        }
        if (&board != &file.jsonEntry) {
            if (const json* const common = memberOf(file.jsonEntry, criterion)) {
                return common;
            }
        }
    }
    return criterion.otherwise(*this);
}

bool isMet(const MatchCriterion& criterion, const Requirements& requirements, const ZoSUpdateElement& element)
{
    const Actual actual = criterion.actual(element);
    if (!actual) {
        return true;
    }
    const json* const expected = requirements.expected(criterion);
    return expected != nullptr &&
           anyStated(*expected, criterion.form, [&](const MatchValue& stated) { return stated == *actual; });
}

std::size_t countMet(const Requirements& requirements, const ZoSUpdateElement& element)
{
    const auto unmet = std::find_if_not(matchCriteria.begin(), matchCriteria.end(),
                                        [&](const auto& criterion) { return isMet(criterion, requirements, element); });
    return static_cast<std::size_t>(unmet - matchCriteria.begin());
}

const json* decidingBoard(const ZoSUpdateFile& file, const MatchValue& boardType)
{
    return findBoard(file, [&](const json& board) {
        return anyBoardType(board, [&](const MatchValue& stated) { return stated == boardType; });
    });
}

DecidingBoards decidingBoards(const ZoSUpdateFile& file)
{
    DecidingBoards boards;
    findBoard(file, [&](const json& board) {
        return anyBoardType(board, [&](MatchValue type) {
            boards.try_emplace(std::move(type), &board);  // a later one of the same type is never looked at
            return false;
        });
    });
    return boards;
}

}  // namespace ZoNUpdateAssignment
