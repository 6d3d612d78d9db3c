// The board objects of an entry, and for which boards each of them decides.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateInspection {

struct BoardObject {
    const ZoNJson::json* json;            // refers to the file's entry
    std::int32_t position;                // in "boards" of the entry; -1: the entry itself, which has none
    std::vector<std::string> decidesFor;  // board types, in the order in which they are stated; each once
};

// Calls `action` for each, in the order of the entry. One without "boards" is its own board object.
void forEachBoardObject(const ZoNUpdateArchive::ZoSUpdateFile& file, const std::function<void(BoardObject&)>& action);

// All of them.
std::vector<BoardObject> boardObjectsOf(const ZoNUpdateArchive::ZoSUpdateFile& file);

}  // namespace ZoNUpdateInspection
