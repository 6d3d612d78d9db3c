// FileIndex: finds the few update files that can fit an element without looking at all of them.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "inventory/ZoSUpdateElement.h"

namespace ZoNUpdateAssignment {

class FileIndex {
public:
    // Indexes `files` by board type and by id or target path. Keeps no reference to them.
    explicit FileIndex(const std::vector<ZoNUpdateArchive::ZoSUpdateFile>& files);

    // Indices, in ascending order, of all files that can fit the element; whether one does is for `matches` to say. Any
    // other file does not fit.
    const std::vector<std::uint32_t>& candidates(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

private:
    void addFile(const ZoNUpdateArchive::ZoSUpdateFile& file, std::uint32_t index);

    std::unordered_map<std::string, std::vector<std::uint32_t>> filesByKey;
};

}  // namespace ZoNUpdateAssignment
