// The target file: one JSON document that is the simulated device.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "simulation/base/Clock.h"
#include "simulation/base/FileStamp.h"
#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/TreeItem.h"
#include "simulation/target/JsonCursor.h"
#include "simulation/target/MemberChanges.h"
#include "simulation/target/Script.h"
#include "simulation/target/UpdateContent.h"

namespace TrellanSimulation {

class TargetFile {
public:
    // Reads and validates the target file at `path`. Throws DocumentFault with the place of the first thing that is
    // wrong, or the reason why the file cannot be read.
    explicit TargetFile(const std::filesystem::path& path);

    // Whether the file is for certain still as it was read: the same bytes.
    bool isUnchanged() const { return stamp.isThatOf(path); }

    ClockKind clock() const { return clockOfTarget; }

    // How fast an update without scripted polls goes on; above 0.
    std::uint64_t bytesPerSecond() const { return rate; }

    // The folder that is the flash drive, absolute; nothing when the target has none.
    const std::optional<std::filesystem::path>& flashDrive() const { return flash; }

    const std::shared_ptr<const Script>& script() const { return calls; }

    // The device's inventory tree, with the script's faults of its values. File-system elements whose file is on the
    // flash drive, which must be attached, are valid and have its checksum.
    std::unique_ptr<TreeItem> makeTree();

    // Whether the board with the element `key` (elementKey()) has it: an UPDATE_ELEMENT with that ID below the board's
    // UPDATE_INFO.
    bool hasElement(const std::string& key) { return foundElements().contains(key); }

    // Gives the element `key`, which must exist, the values that `content` carries and makes it valid. So all of them,
    // where several of the board have the ID: nothing tells them apart.
    void installElement(const std::string& key, const UpdateContent& content);

    // Writes the file when elements have changed since it was read or written. Every byte but those of the new values
    // stays as it is. Throws
    // std::runtime_error when another program has changed the file meanwhile, or it cannot be written; it stays as it
    // is then.
    void save();

private:
    // An update element in the document.
    struct Element {
        Json item;
        MemberChanges changes;  // of the parameters, since the document was read
    };
    using Elements = std::unordered_multimap<std::string, Element>;   // by elementKey()
    using Parameters = std::unordered_map<const void*, std::size_t>;  // where they begin in the text, by their item

    void takeStamp();
    void read();
    void readMembers();
    Json treeSource() const { return *document.root().find("tree"); }
    Elements& foundElements();
    static void noteElement(const TreeItem& item, const Json& source, Elements& found);
    static void collectElements(const TreeItem& item, const Json& source, Elements& found);
    void addChanges(TreeItem& tree, const Json& source);
    static void findInText(const Json& item, JsonCursor& cursor, Parameters& found);
    void install(Element& element, const UpdateContent& content);
    std::string changedText() const;

    std::filesystem::path path;  // without symbolic links
    FileStamp stamp;
    std::string text;  // as it was read
    JsonDocument document;
    ClockKind clockOfTarget = ClockKind::real;
    std::uint64_t rate = 1048576;
    std::optional<std::filesystem::path> flash;
    std::shared_ptr<const Script> calls;
    std::optional<Elements> elements;  // of the document, as soon as one is asked for
    std::unique_ptr<TreeItem> unused;  // the tree as the document says, built to check it
    bool changed = false;
};

}  // namespace TrellanSimulation
