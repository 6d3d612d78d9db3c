// ZoCUpdateAssignment: which update file goes to which element, whether it is needed, and when.
//
// Joins the archive and the inventory and owns nothing: its results are fields of the element records and of the files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"
#include "archive/ZoCUpdateArchive.h"
#include "inventory/ZoCUpdateInventory.h"

class ZoCTrellanUpdater;

namespace ZoNUpdateAssignment {

// Why an element's content is to be replaced.
enum class UpdateNeed {
    none,          // it need not be
    notValid,      // it is not valid
    notInUse,      // it is not what the target works with
    newerVersion,  // the file has a newer version
    otherVersion,  // the file has another version, and replaces older and newer ones
    otherChecksum  // the file has another checksum
};

}  // namespace ZoNUpdateAssignment

class ZoCUpdateAssignment {
public:
    using UpdateNeed = ZoNUpdateAssignment::UpdateNeed;

    // An element to be put into a phase.
    struct SortElemType {
        ZoNUpdateInventory::ZoSUpdateElement* element;  // not owned
        std::uint32_t sequence;                         // of its update file
    };

    // Keeps all references; they must outlive the assignment.
    ZoCUpdateAssignment(const ZoCTrellanUpdater& updater, const ZoNTrellanUpdater::ZoTOptions& options,
                        ZoCUpdateArchive& archive, ZoCUpdateInventory& inventory);
    ZoCUpdateAssignment(const ZoCUpdateAssignment&) = delete;
    ZoCUpdateAssignment& operator=(const ZoCUpdateAssignment&) = delete;

    // The whole computation, once, after the archive and the inventory were read.
    void makeAssignment();

    // Takes every element's file away again, before the archive or the target is read anew: none may refer to a file
    // that is gone, nor be marked as having its content.
    void forgetAssignment();

    // The update file that the element has been given, owned by the archive; null when it has none.
    ZoNUpdateArchive::ZoSUpdateFile* fileOf(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

    // Gives each element the first file that fits it, and makes elements for flash-drive files that no element took.
    void assignUpdateFiles();

    // True when what the target lists of an element is what it works with. A file on the flash drive and a
    // configuration are never inactive.
    bool isInUse(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

    // Why what the element has is to be replaced by its file, of which it must have one.
    UpdateNeed needOf(const ZoNUpdateInventory::ZoSUpdateElement& element) const;

    // Marks updates that are not required and disables them; with force those of upgrade files only.
    void computeRedundantUpdates();

    // Orders the enabled elements that have a file into phases by their files' sequence numbers.
    void computeUpdatePhase();

    // Tells whether the archive supports the target: it does not when an element of the HCN's or the CN's board has no
    // file (files on the flash drive aside), since a target of which the archive knows only a part must not be updated
    // at all. Marks the elements that block the update.
    bool computeTargetSupport();

    // What that has told last; false before.
    bool isTargetSupported() const { return targetSupported; }

    // The order of phases: by sequence.
    static bool lowerThen(SortElemType a, SortElemType b);

    // The phases are 0 to this number minus 1.
    std::uint32_t getNumberOfUpdatePhases() const { return numberOfUpdatePhases; }

    // True when `expected` (one value or an array of values) allows `value`. Only null, equal strings and equal
    // unsigned numbers match.
    static bool contains(const ZoNJson::json& expected, ZoNJson::json value);

    // True when `file` is meant for `element`. For a file-system element `targetPath` becomes the file's target path;
    // empty it before each call and read it only after true.
    static bool matches(const ZoNUpdateInventory::ZoSUpdateElement& element,
                        const ZoNUpdateArchive::ZoSUpdateFile& file, std::string& targetPath);

    // The notices before an update: elements without a file, and elements that need no update.
    void printUnsupportedUpdateElements() const;
    void printNotRequiredUpdates() const;

    // Prints installed and available versions side by side.
    void printVersionsComparison() const;

    ZoCUpdateArchive& getArchive() const { return archive; }
    ZoCUpdateInventory& getInventory() const { return inventory; }

private:
    using ElementPointers = std::vector<ZoNUpdateInventory::ZoSUpdateElement*>;

    // The steps of the computation, each for these elements, which are all that there are in the list.
    void assignFilesTo(const ElementPointers& elements);
    void addFileSystemElements(ElementPointers& elements);
    void computeRedundantUpdatesOf(const ElementPointers& elements);
    void computePhasesOf(const ElementPointers& elements);
    void computeSupportOf(const ElementPointers& elements);

    const ZoCTrellanUpdater& updater;
    const ZoNTrellanUpdater::ZoTOptions& options;
    ZoCUpdateArchive& archive;
    ZoCUpdateInventory& inventory;
    std::vector<ZoNUpdateArchive::ZoSUpdateFile>& updateFiles;  // the archive's
    ZoCUpdateInventory::ElementList& updateElements;            // the inventory's
    std::uint32_t numberOfUpdatePhases = 0;
    bool targetSupported = false;
};
