// FileKeys: what an archive entry expects of elements, by each of its board objects.
#pragma once

#include <cstddef>
#include <vector>

#include "ZoITrellanInspector.h"
#include "archive/ZoSUpdateFile.h"

namespace ZoNUpdateInspection {

struct BoardObject;

class FileKeys {
public:
    // Keeps a copy of `file`, which costs next to nothing, so that the archive may be read anew.
    explicit FileKeys(const ZoNUpdateArchive::ZoSUpdateFile& file);
    ~FileKeys();
    FileKeys(const FileKeys&) = delete;
    FileKeys& operator=(const FileKeys&) = delete;

    std::size_t size() const;

    // By the board object `number`, which must be less than size().
    ZoNTrellanInspector::ZoTFileKeys at(std::size_t number) const;

private:
    ZoNUpdateArchive::ZoSUpdateFile file;
    std::vector<BoardObject> boards;  // of `file`
};

}  // namespace ZoNUpdateInspection
