// Addresses as rows of elements, joined, compared and written.
#include "libZoInventoryTree/ZoCInventoryAddress.h"

#include <algorithm>

#include "simulation/libZoInventoryTree/Kinds.h"

ZoCInventoryAddress::ZoCInventoryAddress(Category category, unsigned index) : elements{{category, index}} {}

ZoCInventoryAddress ZoCInventoryAddress::operator[](unsigned int index) const
{
    ZoCInventoryAddress copy = *this;
    if (!copy.elements.empty()) {
        copy.elements.back().index = index;
    }
    return copy;
}

ZoCInventoryAddress ZoCInventoryAddress::operator/(const ZoCInventoryAddress& relative) const
{
    ZoCInventoryAddress joined;
    joined.elements.reserve(elements.size() + relative.elements.size());
    joined.elements = elements;
    joined.elements.insert(joined.elements.end(), relative.elements.begin(), relative.elements.end());
    return joined;
}

ZoCInventoryAddress::Category ZoCInventoryAddress::getCategory() const noexcept
{
    return elements.empty() ? noCategory : elements.back().category;
}

ZoCInventoryAddress ZoCInventoryAddress::getLastElement() const
{
    return elements.empty() ? ZoCInventoryAddress() : getElement(elements.size() - 1);
}

std::size_t ZoCInventoryAddress::getLength() const noexcept
{
    return elements.size();
}

ZoCInventoryAddress ZoCInventoryAddress::getElement(std::size_t position) const
{
    const Element& element = elements.at(position);
    return ZoCInventoryAddress(element.category, element.index);
}

ZoCString ZoCInventoryAddress::toString() const
{
    std::string text;
    for (const Element& element : elements) {
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
    return std::equal(elements.begin(), elements.end(), other.elements.begin(), other.elements.end(),
                      [](const Element& left, const Element& right) {
                          return left.category == right.category && left.index == right.index;
                      });
}

bool ZoCInventoryAddress::operator!=(const ZoCInventoryAddress& other) const noexcept
{
    return !(*this == other);
}
