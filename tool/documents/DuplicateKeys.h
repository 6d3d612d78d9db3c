// Keys that stand in their object already, found with eight bytes for each key of the objects that are open.
#pragma once

#include <cstddef>
#include <cstdint>
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

    // Where those keys of the innermost open object begin that stand in it already, in no order. Its keys are
    // forgotten.
    std::vector<std::size_t> take(std::size_t object);

private:
    void addRepeated(std::vector<std::size_t>& repeated, const std::uint64_t* first, const std::uint64_t* end) const;

    std::string_view text;
    std::vector<std::uint64_t> keys;  // of each some bits of a hash, and below them where it begins
};

}  // namespace TrellanTool
