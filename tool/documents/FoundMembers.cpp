#include "tool/documents/FoundMembers.h"

#include <algorithm>

#include "tool/documents/PackedNumbers.h"

namespace TrellanTool {

namespace {

constexpr std::size_t blockSize = 64;  // members: as many are read at most to come to one

}  // namespace

void FoundMembers::add(std::size_t offset, const std::string& object)
{
    if (count % blockSize == 0) {
        if (!blocks.empty()) {
            blocks.back().shrink_to_fit();
        }
        blocks.emplace_back();
        last = {};
    }
    std::string& block = blocks.back();
    const bool changes = object != last.object;
    addPacked(block, stepBetween(last.offset, offset) << 1 | (changes ? 1 : 0));
    if (changes) {
        const std::size_t most = std::min(object.size(), last.object.size());
        const auto same = static_cast<std::size_t>(
            std::mismatch(object.data(), object.data() + most, last.object.data()).first - object.data());
        addPacked(block, same);
        addPacked(block, object.size() - same);
        block.append(object, same);
        last.object = object;
    }
    last.offset = offset;
    ++count;
    reader = Reader();
}

void FoundMembers::take(FoundMembers& others)
{
    if (count == 0) {
        std::swap(*this, others);
        return;
    }
    for (std::size_t i = 0; i < others.count; ++i) {
        const Member& member = others.memberAt(i);
        add(member.offset, member.object);
        if (i % blockSize == blockSize - 1) {
            std::string().swap(others.blocks[i / blockSize]);
        }
    }
    others.clear();
}

void FoundMembers::clear()
{
    blocks.clear();
    count = 0;
    last = {};
    reader = Reader();
}

void FoundMembers::readNext() const
{
    if (reader.next % blockSize == 0) {
        reader.byte = 0;
        reader.member = {};
    }
    const std::string& block = blocks[reader.next / blockSize];
    const std::uint64_t head = takePacked(block, reader.byte);
    reader.member.offset = afterStep(reader.member.offset, head >> 1);
    if (head % 2 != 0) {
        reader.member.object.resize(takePacked(block, reader.byte));
        const std::size_t length = takePacked(block, reader.byte);
        reader.member.object.append(block, reader.byte, length);
        reader.byte += length;
    }
    ++reader.next;
}

const FoundMembers::Member& FoundMembers::memberAt(std::size_t position) const
{
    if (position + 1 == reader.next) {
        return reader.member;
    }
    if (position < reader.next || position / blockSize != reader.next / blockSize) {
        reader.next = position / blockSize * blockSize;
    }
    while (reader.next <= position) {
        readNext();
    }
    return reader.member;
}

}  // namespace TrellanTool
