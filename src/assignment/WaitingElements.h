// WaitingElements: the elements that have no update file yet, grouped so that a file finds those it fits without
// looking at the others.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "inventory/ZoCUpdateInventory.h"

namespace ZoNUpdateAssignment {

class WaitingElements {
public:
    using Elements = std::vector<ZoNUpdateInventory::ZoSUpdateElement*>;

    // Takes all elements in. They must stay where they are for as long as this object is used.
    explicit WaitingElements(ZoCUpdateInventory::ElementList& elements);

    // Takes out and returns the elements that `file` fits.
    Elements takeFitting(const ZoNUpdateArchive::ZoSUpdateFile& file);

private:
    // Elements of one board type and id (or location), by everything else that a file may ask of them: those of one
    // group are alike to every file.
    using Groups = std::unordered_map<std::string, Elements>;

    void takeForBoard(const ZoNUpdateArchive::ZoSUpdateFile& file, const ZoNJson::json& board,
                      const std::string& boardType, Elements& taken);
    void takeFromTarget(const std::string& target, const ZoNUpdateArchive::ZoSUpdateFile& file,
                        const ZoNJson::json& board, Elements& taken);

    std::unordered_map<std::string, Groups> groupsByTarget;
};

}  // namespace ZoNUpdateAssignment
