// JSON values that can be destroyed when memory is short, declared. For headers that name them.
//
// The destructor of nlohmann's values takes arrays and objects apart in a std::vector of values, so that deep ones do
// not exhaust the stack. Where there is no memory for that vector, the process would be aborted: it is in the LastRoom
// then. The values themselves are in vectors with another allocator, and report that memory is short as usual.
//
// Begin an object or array as one: a null to which a member or an element is added becomes one before there is memory
// for it, and cannot be destroyed when there is none.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <nlohmann/json_fwd.hpp>
#include <type_traits>

#include "json/LastRoom.h"

namespace TrellanJson {

// As std::allocator, under another name.
template <class T>
class Allocator {
public:
    using value_type = T;
    using is_always_equal = std::true_type;

    Allocator() noexcept = default;
    template <class Other>
    Allocator(const Allocator<Other>&) noexcept
    {
    }

    T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T* place, std::size_t count) noexcept { std::allocator<T>().deallocate(place, count); }

    bool operator==(const Allocator&) const noexcept { return true; }
};

// Members keep their order.
using ordered_json = nlohmann::basic_json<nlohmann::ordered_map, std::vector, std::string, bool, std::int64_t,
                                          std::uint64_t, double, Allocator>;

// Members are ordered by their names.
using json =
    nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t, std::uint64_t, double, Allocator>;

inline constinit LastRoom lastRoom;

// What std::vector<Value> allocates with.
template <class Value>
class LastRoomAllocator {
public:
    using value_type = Value;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using propagate_on_container_move_assignment = std::true_type;
    using is_always_equal = std::true_type;

    Value* allocate(std::size_t count)
    {
        void* place = ::operator new(count * sizeof(Value), std::nothrow);
        if (place == nullptr) {
            place = lastRoom.take(count * sizeof(Value));
        }
        return place != nullptr ? static_cast<Value*>(place) : throw std::bad_alloc();
    }

    void deallocate(Value* place, std::size_t) noexcept
    {
        if (!lastRoom.giveBack(place)) {
            ::operator delete(place);
        }
    }
};

}  // namespace TrellanJson

template <>
class std::allocator<TrellanJson::ordered_json> : public TrellanJson::LastRoomAllocator<TrellanJson::ordered_json> {
public:
    allocator() noexcept = default;
    template <class Other>
    allocator(const allocator<Other>&) noexcept
    {
    }
    bool operator==(const allocator&) const noexcept { return true; }
};

template <>
class std::allocator<TrellanJson::json> : public TrellanJson::LastRoomAllocator<TrellanJson::json> {
public:
    allocator() noexcept = default;
    template <class Other>
    allocator(const allocator<Other>&) noexcept
    {
    }
    bool operator==(const allocator&) const noexcept { return true; }
};
