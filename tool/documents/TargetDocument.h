// The target file that a recorded inventory makes.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"

namespace TrellanTool {

// Writes a target file item by item, as they come in the order of the tree.
class TargetDocument {
public:
    // `out` must outlive the document.
    explicit TargetDocument(std::ostream& out) : out(out) {}

    // Begins an item below the last one before it whose level is lower by 1; the first one is the root, of level 0.
    void item(unsigned level, const std::string& id);

    // A parameter of the last item. A text that is not UTF-8 cannot stand in a target file: false, and nothing is
    // written.
    bool text(const std::string& address, const std::string& value);
    void number(const std::string& address, std::uint32_t value);

    // Ends the document. To be called once, last.
    void end();

    // The address of the last item.
    std::string address() const;

private:
    void parameter(const std::string& address, const std::string& value);
    void endParameters();
    void endItems(std::size_t level);

    std::ostream& out;
    std::vector<std::string> open;  // the ids from the root to the last item
    bool hasParameters = false;     // of the last item, one at least is written
};

// Writes what `inspector` has recorded, which is not nothing. Returns what it leaves out, a line for each.
std::vector<std::string> writeTargetDocument(std::ostream& out, ZoITrellanInspector& inspector);

// The line for what is left out: a parameter of an item or, with an empty `parameter`, the item.
std::string omissionText(const std::string& item, const std::string& parameter, const std::string& reason);

}  // namespace TrellanTool
