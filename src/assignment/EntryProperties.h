// Properties of a file entry: given once for the whole entry, or for each of its boards.
#pragma once

#include <string>

#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateAssignment {

// What a file entry says for one board: the board object's own properties come before the entry's. Refers to the entry,
// which must outlive it.
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

private:
    const ZoNJson::json& board;
    const ZoNJson::json& entry;
};

}  // namespace ZoNUpdateAssignment
