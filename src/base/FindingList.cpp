#include "base/FindingList.h"

#include <queue>

using namespace ZoNTrellanInspector;

namespace ZoNUpdateBase {
namespace {

constexpr std::size_t blockSize = 64;  // findings: as many are read at most to come to one

// What stands in front of a finding, below the step from the entry before.
constexpr unsigned changesBoard = 1, changesName = 2, outsideDescription = 4, hasMoreBehind = 8;
constexpr unsigned changeBits = 4;

// Steps up and down as numbers that are small when they are.
std::uint64_t stepBetween(std::int32_t before, std::int32_t after)
{
    const std::int64_t step = std::int64_t{after} - before;
    return static_cast<std::uint64_t>(step < 0 ? -2 * step - 1 : 2 * step);
}

std::int32_t afterStep(std::int32_t before, std::uint64_t step)
{
    const auto half = static_cast<std::int64_t>(step / 2);
    return static_cast<std::int32_t>(before + (step % 2 == 0 ? half : -half - 1));
}

// What few findings have.
bool hasMore(const ZoTFinding& finding)
{
    return !finding.coveredBy.empty() || finding.hasExample;
}

void addMore(std::string& bytes, const ZoTFinding& finding)
{
    addNumber(bytes, finding.coveredBy.size());
    for (const std::uint32_t entry : finding.coveredBy) {
        addNumber(bytes, entry);
    }
    addNumber(bytes, finding.hasExample ? 1 : 0);
    if (finding.hasExample) {
        const ZoTKeys& keys = finding.example;
        addText(bytes, keys.boardType);
        addNumber(bytes, keys.hasBoardVariant ? 1 : 0);
        addText(bytes, keys.boardVariant);
        addNumber(bytes, keys.boardId);
        addNumber(bytes, keys.hwCompatibilityId);
        addNumber(bytes, keys.swCompatibilityId);
        addNumber(bytes, keys.isFile ? 1 : 0);
        addNumber(bytes, keys.id);
        addText(bytes, keys.targetPath);
    }
}

std::uint32_t number32(PackedReader& bytes)
{
    return static_cast<std::uint32_t>(bytes.number());
}

void takeMore(PackedReader& bytes, ZoTFinding& finding)
{
    finding.coveredBy.resize(bytes.number());
    for (std::uint32_t& entry : finding.coveredBy) {
        entry = number32(bytes);
    }
    finding.hasExample = bytes.number() != 0;
    if (finding.hasExample) {
        ZoTKeys& keys = finding.example;
        keys.boardType = bytes.text();
        keys.hasBoardVariant = bytes.number() != 0;
        keys.boardVariant = bytes.text();
        keys.boardId = number32(bytes);
        keys.hwCompatibilityId = number32(bytes);
        keys.swCompatibilityId = number32(bytes);
        keys.isFile = bytes.number() != 0;
        keys.id = number32(bytes);
        keys.targetPath = bytes.text();
    }
}

}  // namespace

FindingList::Subject FindingList::subjectOf(const ZoTFinding& finding)
{
    return {finding.isInDescription, finding.entry, finding.board};
}

bool FindingList::isInOrderWith(const ZoTFinding& next) const
{
    return last.inOrder() <= subjectOf(next).inOrder();
}

void FindingList::add(const ZoTFinding& finding)
{
    packed.clear();
    forms->add(packed, finding);
    if (hasMore(finding)) {
        std::string more;
        addMore(more, finding);
        addText(packed, more);
    }
    append(subjectOf(finding), finding.name, hasMore(finding), packed);
}

void FindingList::append(const Subject& subject, std::string_view name, bool hasMore, std::string_view rest)
{
    reader = Reader();  // it looks at what may move now
    if (count % blockSize == 0) {
        if (!blocks.empty()) {
            blocks.back().shrink_to_fit();
        }
        blocks.emplace_back();
        last = {};
        lastName.clear();
    }
    std::string& block = blocks.back();
    const unsigned changes = (subject.board != last.board ? changesBoard : 0) | (name != lastName ? changesName : 0) |
                             (subject.isInDescription ? 0 : outsideDescription) | (hasMore ? hasMoreBehind : 0);
    addNumber(block, stepBetween(last.entry, subject.entry) << changeBits | changes);
    if (subject.board != last.board) {
        addNumber(block, stepBetween(last.board, subject.board));
    }
    if (name != lastName) {
        addText(block, name);
        lastName = name;
    }
    block += rest;
    last = subject;
    ++count;
}

void FindingList::readSubject(Reader& at) const
{
    if (at.next % blockSize == 0) {
        at.block = PackedReader(blocks[at.next / blockSize]);
        at.subject = {};
        at.name = {};
    }
    const std::uint64_t head = at.block.number();
    at.subject.entry = afterStep(at.subject.entry, head >> changeBits);
    if ((head & changesBoard) != 0) {
        at.subject.board = afterStep(at.subject.board, at.block.number());
    }
    if ((head & changesName) != 0) {
        at.name = at.block.text();
    }
    at.subject.isInDescription = (head & outsideDescription) == 0;
    at.hasMore = (head & hasMoreBehind) != 0;
    ++at.next;
}

std::string_view FindingList::takeRest(Reader& at) const
{
    const char* const begin = at.block.position();
    forms->skip(at.block);
    if (at.hasMore) {
        at.block.text();
    }
    return {begin, static_cast<std::size_t>(at.block.position() - begin)};
}

void FindingList::get(std::size_t position, ZoTFinding& finding) const
{
    Reader at = std::exchange(reader, Reader());  // which stays at the beginning should memory be short
    if (position < at.next || position / blockSize != at.next / blockSize) {
        at.next = position / blockSize * blockSize;
    }
    while (at.next < position) {
        readSubject(at);
        takeRest(at);
    }
    readSubject(at);
    finding.entry = at.subject.entry;
    finding.board = at.subject.board;
    finding.name = at.name;
    finding.isInDescription = at.subject.isInDescription;
    forms->take(at.block, finding);
    finding.coveredBy.clear();
    finding.hasExample = false;
    finding.example = {};
    if (at.hasMore) {
        PackedReader rest(at.block.text());
        takeMore(rest, finding);
    }
    reader = at;
}

FindingList FindingList::merge(const std::vector<FindingList>& lists)
{
    if (lists.empty()) {
        return FindingList();
    }
    std::vector<Reader> readers(lists.size());
    const auto isBehind = [&](std::size_t a, std::size_t b) {
        return std::tuple(readers[a].subject.inOrder(), a) > std::tuple(readers[b].subject.inOrder(), b);
    };
    std::priority_queue<std::size_t, std::vector<std::size_t>, decltype(isBehind)> next(isBehind);
    const auto read = [&](std::size_t list) {
        if (readers[list].next < lists[list].count) {
            lists[list].readSubject(readers[list]);
            next.push(list);
        }
    };
    for (std::size_t i = 0; i < lists.size(); ++i) {
        read(i);
    }
    FindingList merged(lists.front().forms);
    while (!next.empty()) {
        const std::size_t list = next.top();
        next.pop();
        Reader& of = readers[list];
        const std::string_view rest = lists[list].takeRest(of);
        merged.append(of.subject, of.name, of.hasMore, rest);
        read(list);
    }
    return merged;
}

}  // namespace ZoNUpdateBase
