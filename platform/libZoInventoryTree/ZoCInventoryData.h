// ZoCInventoryData: inventory trees kept in files.
#pragma once

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoInventoryTree/ZoCInventoryItem.h"

class ZoCInventoryData {
public:
    // Reads the inventory tree that the file at `path` carries. On success `root` is its root item, owned by the caller
    // and released with delete; `hasChecksum` says whether the file states a checksum, and `checksum` is that checksum.
    // A file that cannot be read or holds no inventory tree adds an error to `errors` and leaves `root` null.
    static void extractInventoryTreeFromFile(ZoCErrorListPool& errors, const char* path, ZoCInventoryItem*& root,
                                             bool& hasChecksum, unsigned& checksum);
};
