// FindingOrder: which finding comes when, in the order of their places, in two to five bytes for each.
#pragma once

#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace TrellanTool {

class FindingOrder {
public:
    struct Placed {
        std::size_t number;                 // of the finding
        std::optional<std::size_t> offset;  // where it begins, in bytes from the beginning of the text
    };

    std::size_t size() const { return count; }

    // Adds the finding `number`, each at most once.
    void add(std::size_t number, std::optional<std::size_t> offset);

    // The one at `position` in the order of the offsets, then of the numbers, those without an offset at the end. One
    // after the other is fastest. From the first call on none can be added.
    Placed at(std::size_t position);

private:
    struct Key {
        std::size_t offset = 0;
        std::size_t number = 0;

        auto operator<=>(const Key&) const = default;
    };

    // Reads a run, which is in order.
    struct Reader {
        const std::string* run;
        std::size_t position = 0;
        Key key;

        bool read();  // false at the end
    };

    void endRun();
    void begin();
    Key take();

    std::size_t count = 0;
    std::vector<Key> recent;  // not in a run yet
    std::vector<std::string> runs;
    std::vector<Reader> readers;  // the last one has the next finding, the others are a heap
    std::size_t next = 0;         // position
};

}  // namespace TrellanTool
