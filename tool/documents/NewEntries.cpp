// Elements with the same keys become one entry; then, list by list, entries that differ in nothing else become one.
#include "tool/documents/NewEntries.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>

namespace TrellanTool {

namespace {

using TrellanJson::json;
using ZoNTrellanInspector::ZoTKeys;

constexpr const char* anyPath = "*";

// Between the numbers there is room for more.
unsigned sequenceOf(const std::string& boardAddress)
{
    const std::string_view last = std::string_view(boardAddress).substr(boardAddress.rfind('/') + 1);
    const std::string_view kind = last.substr(0, last.find('['));
    if (kind == "HCN") {
        return 30;
    }
    return kind == "CN" ? 20 : 10;
}

NewEntry entryFor(const WantedElement& element, std::size_t position)
{
    const ZoTKeys& keys = element.keys;
    NewEntry entry;
    entry.boardType = keys.boardType;
    entry.isFile = keys.isFile;
    entry.id = keys.id;
    entry.targetPath = keys.targetPath;
    entry.lists[NewEntry::boardVariant] = {keys.hasBoardVariant ? json(keys.boardVariant) : json()};
    entry.lists[NewEntry::boardId] = {keys.boardId};
    entry.lists[NewEntry::hwCompatibilityId] = {keys.hwCompatibilityId};
    entry.lists[NewEntry::swCompatibilityId] = {keys.swCompatibilityId};
    entry.sequence = sequenceOf(element.boardAddress);
    entry.elementName = element.name;
    entry.version = element.installedVersion;
    entry.firstElement = position;
    return entry;
}

// `other` comes later.
void merge(NewEntry& entry, const NewEntry& other)
{
    for (std::size_t i = 0; i < NewEntry::listCount; ++i) {
        entry.lists[i].insert(other.lists[i].begin(), other.lists[i].end());
    }
    entry.sequence = std::max(entry.sequence, other.sequence);
    if (entry.version.empty()) {
        entry.version = other.version;
    }
}

// Makes entries that differ in this list at most one; the others stay in their order.
std::vector<NewEntry> merged(std::vector<NewEntry> entries, std::size_t list)
{
    using Rest = std::tuple<std::string, bool, std::uint32_t, std::string, std::array<NewEntry::Values, 4>>;
    std::map<Rest, std::size_t> positions;
    std::vector<NewEntry> result;
    for (NewEntry& entry : entries) {
        auto others = entry.lists;
        others[list].clear();
        const auto [found, isNew] = positions.try_emplace(
            {entry.boardType, entry.isFile, entry.id, entry.targetPath, std::move(others)}, result.size());
        if (isNew) {
            result.push_back(std::move(entry));
        } else {
            merge(result[found->second], entry);
        }
    }
    return result;
}

// A path that no element has.
std::string pathOfNone(const std::vector<WantedElement>& elements)
{
    std::set<std::string> paths;
    for (const WantedElement& element : elements) {
        paths.insert(element.keys.targetPath);
    }
    std::string path = "new-file";
    for (unsigned number = 2; paths.contains(path); ++number) {
        path = "new-file-" + std::to_string(number);
    }
    return path;
}

}  // namespace

std::vector<NewEntry> newEntries(const std::vector<WantedElement>& elements)
{
    std::vector<NewEntry> entries;
    entries.reserve(elements.size());
    for (const WantedElement& element : elements) {
        entries.push_back(entryFor(element, entries.size()));
    }
    for (std::size_t list = 0; list < NewEntry::listCount; ++list) {
        entries = merged(std::move(entries), list);
    }
    const auto takesAnyPath = [](const NewEntry& entry) { return entry.isFile && entry.targetPath == anyPath; };
    const auto place = [&](const NewEntry& entry) {
        return std::tuple(!takesAnyPath(entry), entry.sequence, entry.firstElement);
    };
    std::sort(entries.begin(), entries.end(),
              [&](const NewEntry& left, const NewEntry& right) { return place(left) < place(right); });
    const std::string path = pathOfNone(elements);
    for (NewEntry& entry : entries) {
        if (takesAnyPath(entry)) {
            entry.targetPath = path;
        }
    }
    return entries;
}

}  // namespace TrellanTool
