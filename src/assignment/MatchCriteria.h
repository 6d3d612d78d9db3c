// The rule by which update files are for update elements: a table of criteria, and which board object of a file
// decides.
//
// A file is for an element when the board object that decides for the element's board type meets every criterion.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include "archive/ZoSUpdateFile.h"
#include "base/MatchValue.h"
#include "inventory/ZoSUpdateElement.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateAssignment {

using ZoNUpdateBase::MatchValue;

// Nothing for a JSON value of any other kind, which equals nothing.
std::optional<MatchValue> matchValueOf(const ZoNJson::json& value);

// How a property states what is accepted.
enum class StatedAs {
    list,    // one value, or an array of them (an array in an array is a value that equals nothing)
    number,  // one number; beyond 32 bits it counts as the largest one
    text     // one text
};

// Asks `test` for each value that a property states, until it is true, and returns whether it was. Throws
// ZoNJson::type_error for a property that is no number or no text but must be one.
template <class Test>
bool anyStated(const ZoNJson::json& property, StatedAs form, Test test)
{
    if (form == StatedAs::number) {
        return test(MatchValue(static_cast<unsigned>(property)));
    }
    if (form == StatedAs::text) {
        return test(MatchValue(std::string(property)));
    }
    const auto testValue = [&](const ZoNJson::json& stated) {
        std::optional<MatchValue> value = matchValueOf(stated);
        return value && test(*std::move(value));
    };
    if (!property.is_array()) {
        return testValue(property);
    }
    for (const ZoNJson::json& stated : property) {
        if (testValue(stated)) {
            return true;
        }
    }
    return false;
}

class Requirements;

// One thing that a file asks of an element.
struct MatchCriterion {
    // Positions in the table.
    enum Index : std::size_t {
        boardType,
        boardVariant,
        boardId,
        kind,  // a file on the flash drive, or an element of a board
        id,
        targetPath,
        hwCompatibilityId,
        swCompatibilityId,
        count
    };

    const char* name;
    const char* property;  // of a board object or the entry; null where no property states it
    StatedAs form;

    // What is expected where no property states it. It is a value and no wildcard; null: no element fits.
    const ZoNJson::json* (*otherwise)(const Requirements& requirements);

    // What the element has; nothing when the criterion does not concern it. Those stated as a list concern every one.
    std::optional<MatchValue> (*actual)(const ZoNUpdateInventory::ZoSUpdateElement& element);
};

// In the order in which they are tested.
extern const std::array<MatchCriterion, MatchCriterion::count> matchCriteria;

// Those that are stated as lists, the board type aside.
inline constexpr std::array listedCriteria{MatchCriterion::boardVariant, MatchCriterion::boardId,
                                           MatchCriterion::hwCompatibilityId, MatchCriterion::swCompatibilityId};

// Those of which a file has one value for an element, the board type because it finds the board object.
inline constexpr std::array targetCriteria{MatchCriterion::boardType, MatchCriterion::kind, MatchCriterion::id,
                                           MatchCriterion::targetPath};

// Where a file states no target path, it is for this one.
inline constexpr const char* targetPathOtherwise = "";

// What a file asks of the elements for which one of its board objects decides. Refers to all that it is made from.
class Requirements {
public:
    // `board` may be the entry itself. `pathOtherwise` is expected where no target path is stated.
    Requirements(const ZoNJson::json& board, const ZoNUpdateArchive::ZoSUpdateFile& file,
                 const ZoNJson::json& pathOtherwise)
        : board(board), file(file), pathOtherwise(pathOtherwise)
    {
    }

    // The property as it stands there: the board object's own comes before the entry's, and both before the default.
    // Null: no element fits.
    const ZoNJson::json* expected(const MatchCriterion& criterion) const;

    const ZoNUpdateArchive::ZoSUpdateFile& getFile() const { return file; }
    const ZoNJson::json& getPathOtherwise() const { return pathOtherwise; }

private:
    const ZoNJson::json& board;
    const ZoNUpdateArchive::ZoSUpdateFile& file;
    const ZoNJson::json& pathOtherwise;
};

bool isMet(const MatchCriterion& criterion, const Requirements& requirements,
           const ZoNUpdateInventory::ZoSUpdateElement& element);

// How many criteria are met before the first that is not.
std::size_t countMet(const Requirements& requirements, const ZoNUpdateInventory::ZoSUpdateElement& element);

// Asks `test` for each board object of the file, in their order, until it is true; for the entry itself when it has no
// "boards". Returns the one for which it was true; null when there is none.
template <class Test>
const ZoNJson::json* findBoard(const ZoNUpdateArchive::ZoSUpdateFile& file, Test test)
{
    if (!file.jsonEntry.contains("boards")) {
        return test(file.jsonEntry) ? &file.jsonEntry : nullptr;
    }
    for (const ZoNJson::json& board : file.jsonEntry["boards"]) {
        if (test(board)) {
            return &board;
        }
    }
    return nullptr;
}

// Asks `test` for each board type that a board object states, until it is true, and returns whether it was.
template <class Test>
bool anyBoardType(const ZoNJson::json& board, Test test)
{
    const MatchCriterion& criterion = matchCriteria[MatchCriterion::boardType];
    return anyStated(board[criterion.property], criterion.form, test);
}

// The board object of the file that decides for a board type: the first that states the type, whatever it states
// besides. Null when none does.
const ZoNJson::json* decidingBoard(const ZoNUpdateArchive::ZoSUpdateFile& file, const MatchValue& boardType);

// The deciding ones of all board types that the file is for. Refers to the file's entry.
using DecidingBoards = std::unordered_map<MatchValue, const ZoNJson::json*>;
DecidingBoards decidingBoards(const ZoNUpdateArchive::ZoSUpdateFile& file);

}  // namespace ZoNUpdateAssignment
