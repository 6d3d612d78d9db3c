// Findings are put in order some at a time, and what that gives is kept packed. These runs are merged when they are
// read.
#include "tool/documents/FindingOrder.h"

#include <algorithm>
#include <limits>

#include "tool/documents/PackedNumbers.h"

namespace TrellanTool {

namespace {

constexpr std::size_t noOffset = std::numeric_limits<std::size_t>::max() / 2;
constexpr std::size_t runSize = 1 << 15;  // findings

// Of a heap whose first reader has the least key.
constexpr auto isBehind = [](const auto& a, const auto& b) { return a.key > b.key; };

}  // namespace

bool FindingOrder::Reader::read()
{
    if (position == run->size()) {
        return false;
    }
    key.offset += takePacked(*run, position);
    key.number = afterStep(key.number, takePacked(*run, position));
    return true;
}

void FindingOrder::add(std::size_t number, std::optional<std::size_t> offset)
{
    recent.push_back({offset.value_or(noOffset), number});
    ++count;
    if (recent.size() == runSize) {
        endRun();
    }
}

void FindingOrder::endRun()
{
    std::sort(recent.begin(), recent.end());
    std::string run;
    Key before;
    for (const Key& key : recent) {
        addPacked(run, key.offset - before.offset);
        addPacked(run, stepBetween(before.number, key.number));
        before = key;
    }
    run.shrink_to_fit();
    runs.push_back(std::move(run));
    recent.clear();
}

void FindingOrder::begin()
{
    if (!recent.empty()) {
        endRun();
        recent = {};
    }
    next = 0;
    readers.clear();
    for (const std::string& run : runs) {
        readers.push_back({&run, 0, {}});
        readers.back().read();
    }
    std::make_heap(readers.begin(), readers.end(), isBehind);
    std::pop_heap(readers.begin(), readers.end(), isBehind);
}

FindingOrder::Key FindingOrder::take()
{
    const Key taken = readers.back().key;
    if (!readers.back().read()) {
        readers.pop_back();
        std::pop_heap(readers.begin(), readers.end(), isBehind);
    } else if (isBehind(readers.back(), readers.front())) {
        std::push_heap(readers.begin(), readers.end(), isBehind);
        std::pop_heap(readers.begin(), readers.end(), isBehind);
    }
    ++next;
    return taken;
}

FindingOrder::Placed FindingOrder::at(std::size_t position)
{
    if (readers.empty() || position < next) {
        begin();
    }
    while (next < position) {
        take();
    }
    const Key key = take();
    return {key.number, key.offset == noOffset ? std::nullopt : std::optional(key.offset)};
}

}  // namespace TrellanTool
