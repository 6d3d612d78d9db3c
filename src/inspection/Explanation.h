// Explanation: how elements and the entries of an archive fit one another, criterion by criterion.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "assignment/MatchCriteria.h"
#include "inventory/ZoSUpdateElement.h"

namespace ZoNUpdateInspection {

// An entry by one of its board objects, held against an element.
struct Comparison {
    std::size_t file;                                               // position in the list of files
    std::int32_t board;                                             // in "boards"; -1: the entry has none
    const ZoNJson::json* object;                                    // the board object
    std::vector<ZoNUpdateAssignment::MatchCriterion::Index> unmet;  // in the order of the table
};

class Explanation {
public:
    // Keeps a copy of the list, which costs little, so that the archive may be read anew.
    explicit Explanation(const std::vector<ZoNUpdateArchive::ZoSUpdateFile>& files);
    Explanation(const Explanation&) = delete;
    Explanation& operator=(const Explanation&) = delete;

    // The element against all files for its board type, each by the board object that decides. Where there is none:
    // against the three with the fewest unmet criteria, each by the board object with the fewest. In the order of
    // fewest unmet criteria, then of the files. Elements with the same keys, the board type aside, are held against all
    // files only once.
    std::vector<Comparison> compare(const ZoNUpdateInventory::ZoSUpdateElement& element);

    // The element against one file, which must be for its board type.
    Comparison compare(const ZoNUpdateInventory::ZoSUpdateElement& element, std::size_t file) const;

    // Whether the file is for the element's board type.
    bool isForType(const ZoNUpdateInventory::ZoSUpdateElement& element, std::size_t file) const;

    // What the comparison's board object expects by the criterion, as JSON.
    std::string expected(const Comparison& comparison, ZoNUpdateAssignment::MatchCriterion::Index criterion) const;

    // What the element has by the criterion, as JSON.
    static std::string actual(const ZoNUpdateInventory::ZoSUpdateElement& element,
                              ZoNUpdateAssignment::MatchCriterion::Index criterion);

private:
    struct Decision {
        std::size_t file;
        std::int32_t board;
        const ZoNJson::json* object;
    };
    using Decisions = std::vector<Decision>;

    // What an element has by each criterion, without the board type.
    using Keys = std::array<std::optional<ZoNUpdateAssignment::MatchValue>, ZoNUpdateAssignment::MatchCriterion::count>;

    static Keys keysOf(const ZoNUpdateInventory::ZoSUpdateElement& element);

    const Decisions* decisionsFor(const ZoNUpdateInventory::ZoSUpdateElement& element) const;
    const Decision* decisionOf(const ZoNUpdateInventory::ZoSUpdateElement& element, std::size_t file) const;
    Comparison hold(const Decision& decision, const ZoNUpdateInventory::ZoSUpdateElement& element) const;
    std::vector<Comparison> nearest(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

    const std::vector<ZoNUpdateArchive::ZoSUpdateFile> files;
    const ZoNJson::json pathOtherwise;
    std::unordered_map<std::string, Decisions> decisions;   // by board type, in the order of the files
    Decisions objects;                                      // all board objects
    std::map<Keys, std::vector<Comparison>> nearestByKeys;  // of board types that no file is for
};

// An explanation of which one part is told.
struct Explained {
    Explained(const std::vector<ZoNUpdateArchive::ZoSUpdateFile>& files, unsigned generation)
        : explanation(files), generation(generation)
    {
    }

    struct Candidate {
        std::uint32_t element;  // index
        Comparison comparison;
    };

    Explanation explanation;
    const unsigned generation;  // of the archive that the files are of
    std::vector<Candidate> candidates;
};

}  // namespace ZoNUpdateInspection
