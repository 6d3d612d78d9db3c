// The properties by which a file entry says what elements it is for, besides board type and id or target path.
#pragma once

#include <array>
#include <string>

#include "inventory/ZoSUpdateElement.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateAssignment {

// A property whose value, or one of whose values, must be what the element is. What an entry leaves out has a default,
// never a wildcard.
struct MatchCriterion {
    std::string key;
    ZoNJson::json (*elementValue)(const ZoNUpdateInventory::ZoSUpdateElement& element);
    ZoNJson::json defaultValue;
};

// In the order in which they are tested.
const std::array<MatchCriterion, 4>& matchCriteria();

// How many of them are tested before the kind of element and its id or target path.
constexpr std::size_t criteriaBeforeTarget = 2;

// What a file entry says for one of its boards: the board object's own properties come before the entry's. An entry
// without "boards" is its own board object. Refers to both, which must outlive it.
class EntryProperties {
public:
    EntryProperties(const ZoNJson::json& board, const ZoNJson::json& entry) : board(board), entry(entry) {}

    // Null when neither the board object nor the entry has the property.
    const ZoNJson::json* find(const std::string& key) const
    {
        if (board.contains(key)) {
            return &board[key];
        }
        return entry.contains(key) ? &entry[key] : nullptr;
    }

    // What is expected of the element.
    const ZoNJson::json& expected(const MatchCriterion& criterion) const
    {
        const ZoNJson::json* const value = find(criterion.key);
        return value != nullptr ? *value : criterion.defaultValue;
    }

    const ZoNJson::json* id() const;
    const ZoNJson::json* targetPath() const;

private:
    const ZoNJson::json& board;
    const ZoNJson::json& entry;
};

}  // namespace ZoNUpdateAssignment
