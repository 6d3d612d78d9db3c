// The properties by which a file entry says what elements it is for, besides board type and id or target path.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "inventory/ZoSUpdateElement.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateAssignment {

// A property whose value, or one of whose values, must be what the element is. What an entry leaves out has a default,
// never a wildcard.
struct MatchCriterion {
    std::string property;
    std::string (*elementKey)(const ZoNUpdateInventory::ZoSUpdateElement& element);  // key of the element's value
    ZoNJson::json defaultValue;
};

// In the order in which they are tested.
const std::array<MatchCriterion, 4>& matchCriteria();

// How many of them are tested before the kind of element and its id or target path.
constexpr std::size_t criteriaBeforeTarget = 2;

// Key of the element's board type.
std::string boardTypeKey(const ZoNUpdateInventory::ZoSUpdateElement& element);

// True for a file-system element that takes any target path.
bool takesAnyPath(const ZoNUpdateInventory::ZoSUpdateElement& element);

// What a file entry says for one of its boards: the board object's own properties come before the entry's. An entry
// without "boards" is its own board object. Refers to both, which must outlive it.
class EntryProperties {
public:
    EntryProperties(const ZoNJson::json& board, const ZoNJson::json& entry) : board(board), entry(entry) {}

    // What is expected of the element.
    const ZoNJson::json& expected(const MatchCriterion& criterion) const
    {
        const ZoNJson::json* const value = find(criterion.property);
        return value != nullptr ? *value : criterion.defaultValue;
    }

    // Nothing when neither the board object nor the entry has it.
    std::optional<std::uint32_t> id() const;
    std::optional<std::string> targetPath() const;

private:
    const ZoNJson::json* find(const std::string& property) const
    {
        if (board.contains(property)) {
            return &board[property];
        }
        return entry.contains(property) ? &entry[property] : nullptr;
    }

    const ZoNJson::json& board;
    const ZoNJson::json& entry;
};

}  // namespace ZoNUpdateAssignment
