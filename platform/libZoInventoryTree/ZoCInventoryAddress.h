// ZoCInventoryAddress: the place of an item or a parameter in an inventory tree.
//
// A path of elements, each a kind (a constant of ZoNInventoryIDs) and an index, 1 unless stated otherwise. An item's
// address is its path from the root; a parameter's address is relative to its item.
//
// Inventory trees and addresses are not thread safe: all calls come from the host's thread.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "libZoComposite/ZoCString.h"

class ZoCInventoryAddress {
public:
    // Number of a kind of item or parameter.
    using Category = unsigned;

    // Category of the empty address.
    static constexpr Category noCategory = 0;

    // The empty address.
    ZoCInventoryAddress() = default;

    ZoCInventoryAddress(const ZoCInventoryAddress& other) = default;
    ZoCInventoryAddress& operator=(const ZoCInventoryAddress& other) = default;

    // The address of a single element.
    explicit ZoCInventoryAddress(Category category, unsigned index = 1);

    // A copy whose last element has the index `index`. The empty address stays empty.
    ZoCInventoryAddress operator[](unsigned int index) const;

    // This address followed by the elements of `relative`.
    ZoCInventoryAddress operator/(const ZoCInventoryAddress& relative) const;

    // Kind of the last element; noCategory when the address is empty.
    Category getCategory() const noexcept;

    // Index of the last element; 0 when the address is empty.
    unsigned getIndex() const noexcept;

    // The last element alone; empty when the address is empty.
    ZoCInventoryAddress getLastElement() const;

    // Number of elements, and the element at `position` (from 0) alone.
    std::size_t getLength() const noexcept;
    ZoCInventoryAddress getElement(std::size_t position) const;

    // A "/" before every element, the name of its kind, and "[n]" when its index is not 1:
    // "/ROOT/HCN/UPDATE_INFO/UPDATE_ELEMENT[2]".
    ZoCString toString() const;

    bool operator==(const ZoCInventoryAddress& other) const noexcept;
    bool operator!=(const ZoCInventoryAddress& other) const noexcept;

private:
    struct Element {
        Category category;
        unsigned index;
    };

    void add(const Element& element);
    const Element* begin() const noexcept;
    const Element* end() const noexcept;

    // Most addresses are short, and made and compared all the time: they need no memory of their own.
    static constexpr std::size_t shortLength = 4;
    std::size_t length = 0;
    std::array<Element, shortLength> shortElements{};
    std::vector<Element> longElements;  // all of them, where there are more
};
