// LastRoom: memory for those who must not fail, such as destructors, while there is no other.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <mutex>

namespace TrellanJson {

// It is given out from its beginning to its end, and all of it is free again once nobody has any of it.
class LastRoom {
public:
    // Null when there is not so much left.
    void* take(std::size_t size) noexcept
    {
        const std::lock_guard guard(mutex);
        const std::size_t aligned = (size + alignment - 1) / alignment * alignment;
        if (aligned > bytes.size() - used) {
            return nullptr;
        }
        ++holders;
        used += aligned;
        return &bytes[used - aligned];
    }

    // False when `place` was not taken from here.
    bool giveBack(const void* place) noexcept
    {
        const auto* const given = static_cast<const std::byte*>(place);
        if (std::less<>()(given, bytes.data()) || !std::less<>()(given, bytes.data() + bytes.size())) {
            return false;
        }
        const std::lock_guard guard(mutex);
        used = --holders == 0 ? 0 : used;
        return true;
    }

private:
    static constexpr std::size_t alignment = alignof(std::max_align_t);

    std::mutex mutex;
    std::size_t used = 0;
    unsigned holders = 0;
    alignas(alignment) std::array<std::byte, 256UL * 1024> bytes = {};
};

}  // namespace TrellanJson
