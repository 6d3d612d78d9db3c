// Addresses as rows of elements, joined, compared and written.
#include "libZoInventoryTree/ZoCInventoryAddress.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "simulation/libZoInventoryTree/Kinds.h"

ZoCInventoryAddress::ZoCInventoryAddress(Category category, unsigned index) : length(1)
{
    shortElements[0] = {category, index};
}

void ZoCInventoryAddress::add(const Element& element)
{
    if (length < shortLength) {
        shortElements[length] = element;
    } else {
        if (length == shortLength) {
            longElements.assign(shortElements.begin(), shortElements.end());
        }
        longElements.push_back(element);
    }
    ++length;
}

const ZoCInventoryAddress::Element* ZoCInventoryAddress::begin() const noexcept
{
    return length <= shortLength ? shortElements.data() : longElements.data();
}

const ZoCInventoryAddress::Element* ZoCInventoryAddress::end() const noexcept
{
    return begin() + length;
}

ZoCInventoryAddress ZoCInventoryAddress::operator[](unsigned int index) const
{
    ZoCInventoryAddress copy;
    for (const Element& element : *this) {
        copy.add({element.category, &element + 1 == end() ? index : element.index});
    }
    return copy;
}

ZoCInventoryAddress ZoCInventoryAddress::operator/(const ZoCInventoryAddress& relative) const
{
    ZoCInventoryAddress joined = *this;
    if (length + relative.length <= shortLength) {
        std::copy_n(relative.shortElements.data(), relative.length, joined.shortElements.data() + length);
        joined.length += relative.length;
        return joined;
    }
    for (const Element& element : relative) {
        joined.add(element);
    }
    return joined;
}

ZoCInventoryAddress::Category ZoCInventoryAddress::getCategory() const noexcept
{
    return length == 0 ? noCategory : (end() - 1)->category;
}

unsigned ZoCInventoryAddress::getIndex() const noexcept
{
    return length == 0 ? 0 : (end() - 1)->index;
}

ZoCInventoryAddress ZoCInventoryAddress::getLastElement() const
{
    return length == 0 ? ZoCInventoryAddress() : getElement(length - 1);
}

std::size_t ZoCInventoryAddress::getLength() const noexcept
{
    return length;
}

ZoCInventoryAddress ZoCInventoryAddress::getElement(std::size_t position) const
{
    if (position >= length) {
        throw std::out_of_range("the address has no such element");
    }
    const Element& element = begin()[position];
    return ZoCInventoryAddress(element.category, element.index);
}

ZoCString ZoCInventoryAddress::toString() const
{
    std::string text;
    for (const Element& element : *this) {
        text += '/';
        text += TrellanSimulation::kindName(element.category);
        if (element.index != 1) {
            text += '[' + std::to_string(element.index) + ']';
        }
    }
    return ZoCString(text.data(), text.length());
}

bool ZoCInventoryAddress::operator==(const ZoCInventoryAddress& other) const noexcept
{
    if (length != other.length) {
        return false;
    }
    const auto isSame = [](const Element& left, const Element& right) {
        return left.category == right.category && left.index == right.index;
    };
    return length <= shortLength
               ? std::equal(shortElements.data(), shortElements.data() + length, other.shortElements.data(), isSame)
               : std::equal(longElements.begin(), longElements.end(), other.longElements.begin(), isSame);
}

bool ZoCInventoryAddress::operator!=(const ZoCInventoryAddress& other) const noexcept
{
    return !(*this == other);
}
