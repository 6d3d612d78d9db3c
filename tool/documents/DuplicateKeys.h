// Keys that stand in their object already, found with eight bytes for each key of the objects that are open.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>
#include <vector>

namespace TrellanTool {

class DuplicateKeys {
public:
    // Of the objects in `text`, which must outlive this.
    explicit DuplicateKeys(std::string_view text) : text(text) {}

    // An object begins: what to take its keys by.
    std::size_t begin() const { return keys.size(); }

    // The innermost open object has the key `name`, which begins at `offset`.
    void add(std::size_t offset, std::string_view name);

    // Is given where the keys with one name begin, in the order of the text.
    using Use = std::function<void(std::span<const std::size_t> offsets)>;

    // Hands out the keys of the innermost open object, each name's at once, in no order, and forgets them.
    void take(std::size_t object, const Use& use);

private:
    void handOut(const std::uint64_t* first, const std::uint64_t* end, const Use& use) const;

    std::string_view text;
    std::vector<std::uint64_t> keys;  // of each some bits of a hash, and below them where it begins
};

}  // namespace TrellanTool
