#include "tool/documents/FindingOrder.h"

#include <algorithm>
#include <new>

namespace TrellanTool {

namespace {

constexpr unsigned numberBits = 30;  // a thousand million findings of a text of 16 GB
constexpr std::uint64_t numberMask = (std::uint64_t{1} << numberBits) - 1;
constexpr std::uint64_t noOffset = ~std::uint64_t{0} >> numberBits;

void require(bool canBeHeld)
{
    if (!canBeHeld) {
        throw std::bad_alloc();
    }
}

}  // namespace

void FindingOrder::add(std::size_t number)
{
    require(number <= numberMask);
    findings.push_back(noOffset << numberBits | number);
}

void FindingOrder::setOffset(std::size_t position, std::size_t offset)
{
    require(offset < noOffset);
    findings[position] = std::uint64_t{offset} << numberBits | number(position);
}

void FindingOrder::sort()
{
    std::sort(findings.begin(), findings.end());
}

std::size_t FindingOrder::number(std::size_t position) const
{
    return findings[position] & numberMask;
}

std::optional<std::size_t> FindingOrder::offset(std::size_t position) const
{
    const std::uint64_t offset = findings[position] >> numberBits;
    return offset == noOffset ? std::nullopt : std::optional<std::size_t>(offset);
}

}  // namespace TrellanTool
