// WantedParts: the parts of a JSON text to which pointers lead, with those that they are in, in some thirty bytes for
// each. There may be one for every ten bytes of the text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TrellanTool {

class WantedParts {
public:
    using Part = std::uint32_t;
    static constexpr Part whole = 0;

    // Adds the part to which the JSON Pointer leads from the whole. The pointers are counted.
    void add(std::string_view pointer);

    std::size_t size() const { return asked.size(); }

    // The member or element of `parent` with this token, as pointers have it, where it is wanted.
    std::optional<Part> find(Part parent, std::string_view token) const;
    std::optional<Part> find(Part parent, std::size_t position) const;

    // The part begins at `offset`.
    void note(Part part, std::size_t offset) { parts[part].offset = offset; }

    // Where the part begins to which the pointer leads that was added as number `pointer`; of a part that is not there,
    // its parent counts.
    std::optional<std::size_t> offset(std::size_t pointer) const;

    void clear();

private:
    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    struct Known {
        Part parent = whole;
        std::uint32_t token = 0;
        std::size_t offset = nowhere;
    };

    std::uint32_t numberOf(std::string_view token);
    Part partBelow(Part parent, std::uint32_t token);
    std::optional<Part> findNumber(Part parent, std::uint32_t token) const;
    std::size_t slotOf(Part parent, std::uint32_t token) const;
    void makeSlots();

    std::deque<Known> parts = std::deque<Known>(1);
    std::deque<Part> asked;
    std::map<std::string, std::uint32_t, std::less<>> names;  // numbers of the tokens that are no positions
    std::vector<Part> slots;                                  // a hash table of parts; `whole`: free; empty: few parts
};

}  // namespace TrellanTool
