// Reading and checking the target file, and writing what an update has changed.
#include "simulation/target/TargetFile.h"

#include <sys/stat.h>

#include <ctime>
#include <system_error>

#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/base/RegularFile.h"
#include "simulation/libZoInventoryTree/DocumentBuilder.h"
#include "simulation/libZoInventoryTree/TreeBuilder.h"
#include "simulation/target/AtomicFile.h"
#include "simulation/target/FlashDrive.h"

namespace TrellanSimulation {

namespace {

ClockKind readClock(const Json& value, const Place& place)
{
    const std::string& text = getText(value, place);
    if (text != "real" && text != "virtual") {
        throw DocumentFault(place, "neither \"real\" nor \"virtual\"");
    }
    return text == "virtual" ? ClockKind::virtualTime : ClockKind::real;
}

// The system takes a NUL character for the end of a path, and nothing for the target file's own folder.
const std::string& readFolder(const Json& value, const Place& place)
{
    const std::string& text = getText(value, place);
    if (text.empty()) {
        throw DocumentFault(place, "empty");
    }
    if (text.find('\0') != std::string::npos) {
        throw DocumentFault(place, "holds a NUL character");
    }
    return text;
}

// What names the update element `item`; nothing when it is no update element, or one that cannot be named.
std::optional<std::string> keyOf(const TreeItem& item)
{
    using namespace ZoNInventoryIDs;
    const ZoCInventoryItem* info = item.getParent();
    if (item.getID().getCategory() != UPDATE_ELEMENT.getCategory() || info == nullptr || info->getID() != UPDATE_INFO ||
        info->getParent() == nullptr) {
        return std::nullopt;
    }
    const ZoCInventoryParameter* parameter = item.getParameter(ID);
    const auto* id = parameter == nullptr ? nullptr : std::get_if<std::uint64_t>(&parameter->value);
    if (id == nullptr || *id > std::numeric_limits<unsigned>::max()) {
        return std::nullopt;
    }
    return elementKey(info->getParent()->getAddress(), static_cast<unsigned>(*id));
}

void readFlashFile(TreeItem& item)
{
    using namespace ZoNInventoryIDs;
    if (item.getID().getCategory() != FILESYSTEM_ELEMENT.getCategory()) {
        return;
    }
    const ZoCInventoryParameter* parameter = item.getParameter(LOCATION);
    const auto* location = parameter == nullptr ? nullptr : std::get_if<std::string>(&parameter->value);
    const auto file = location == nullptr ? std::nullopt : FlashDrive::find(*location);
    const auto checksum = file ? fileChecksum(*file) : std::nullopt;
    if (checksum) {
        item.setParameter(VALID, std::uint64_t{1});
        item.setParameter(CHECKSUM_CRC32, std::uint64_t{*checksum});
    }
}

}  // namespace

TargetFile::TargetFile(const std::filesystem::path& path) : path(std::filesystem::weakly_canonical(path))
{
    read();
    readMembers();
    findElements();
}

std::unique_ptr<TreeItem> TargetFile::makeTree()
{
    auto tree = unused ? std::move(unused) : buildTree(*findMember(document, "tree"), Place(Place(), "tree"));
    if (flash) {
        tree->forEach(readFlashFile);
    }
    tree->setFaults(calls->values);
    return tree;
}

void TargetFile::installElement(const std::string& key, const UpdateContent& content)
{
    unused.reset();
    const auto [first, end] = elements.equal_range(key);
    for (auto element = first; element != end; ++element) {
        install(element->second, content);
    }
}

void TargetFile::install(Element& element, const UpdateContent& content)
{
    Json& parameters = (*element.item)["parameters"];
    const auto set = [&](const char* name, const Json& value) {
        Json& parameter = parameters[name];
        if (parameter != value) {
            parameter = value;
            element.changes[name] = value;
            changed = true;
        }
    };
    if (content.checksum) {
        set("CHECKSUM_CRC32", *content.checksum);
    }
    if (content.version) {
        set("VERSION", *content.version);
    }
    set("VALID", 1U);
}

void TargetFile::save()
{
    if (!changed) {
        return;
    }
    if (stamp.differsFromThatOf(path)) {
        throw std::runtime_error("another program has changed it meanwhile");
    }
    try {
        replaceFile(path, changedText());
    } catch (const std::system_error&) {
        takeStamp();  // the new file may be in its place all the same
        throw;
    }
    takeStamp();
    changed = false;
}

void TargetFile::takeStamp()
{
    const std::time_t now = std::time(nullptr);
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        stamp = FileStamp(status, now);
    }
}

void TargetFile::read()
try {
    RegularFile file(path);
    stamp = file.stamp();
    document = parseDocument(file, &text);
} catch (const FileFault& fault) {
    throw DocumentFault(fault.what());
}

void TargetFile::readMembers()
{
    const Place top;
    requireMembers(document, {"clock", "bytesPerSecond", "flashDrive", "tree", "script"}, top);
    if (const Json* clock = findMember(document, "clock")) {
        clockOfTarget = readClock(*clock, Place(top, "clock"));
    }
    if (const Json* bytes = findMember(document, "bytesPerSecond")) {
        rate = getNumber(*bytes, Place(top, "bytesPerSecond"), 1, std::numeric_limits<std::uint64_t>::max());
    }
    if (const Json* folder = findMember(document, "flashDrive")) {
        flash = path.parent_path() / readFolder(*folder, Place(top, "flashDrive"));
    }
    const Json* script = findMember(document, "script");
    calls = std::make_shared<Script>(script == nullptr ? Script() : readScript(*script, Place(top, "script")));
}

void TargetFile::findElements()
{
    const Place top;
    unused = buildTree(getMember(document, "tree", top), Place(top, "tree"));
    ElementsOfItems found;
    collectElements(*unused, document["tree"], found);
    JsonCursor cursor(text);
    cursor.forEachMember([&](const JsonCursor::Member& member) {
        member.name == "tree" ? findInText(unused.get(), cursor, found) : cursor.skip();
    });
}

// Walks `source` along with the tree that was built from it.
void TargetFile::collectElements(const TreeItem& item, Json& source, ElementsOfItems& found)
{
    if (const auto key = keyOf(item)) {
        found[&item] = &elements.emplace(*key, Element{&source, 0, {}})->second;
    }
    const ZoCInventoryItem* below = item.getFirstSubItem();
    for (std::size_t position = 0; below != nullptr; below = below->getNext(), ++position) {
        collectElements(static_cast<const TreeItem&>(*below), source["items"][position], found);
    }
}

// Walks the item that the cursor stands at along with the tree. Of members that stand twice the last one is in the
// tree: what is found in an earlier one, which may be anything, is found again. `item` is null where the tree has none.
void TargetFile::findInText(const TreeItem* item, JsonCursor& cursor, const ElementsOfItems& found)
{
    if (item == nullptr || !cursor.isObject()) {
        cursor.skip();
        return;
    }
    const auto element = found.find(item);
    cursor.forEachMember([&](const JsonCursor::Member& member) {
        if (member.name == "items") {
            findItemsInText(*item, cursor, found);
            return;
        }
        if (element != found.end() && member.name == "parameters") {
            element->second->parameters = cursor.offset();
        }
        cursor.skip();
    });
}

void TargetFile::findItemsInText(const TreeItem& item, JsonCursor& cursor, const ElementsOfItems& found)
{
    if (!cursor.isArray()) {
        cursor.skip();
        return;
    }
    const ZoCInventoryItem* below = item.getFirstSubItem();
    cursor.forEachElement([&] {
        findInText(static_cast<const TreeItem*>(below), cursor, found);
        below = below == nullptr ? nullptr : below->getNext();
    });
}

std::string TargetFile::changedText() const
{
    std::map<std::size_t, MemberChanges> changes;
    for (const auto& [key, element] : elements) {
        if (!element.changes.empty()) {
            changes.emplace(element.parameters, element.changes);
        }
    }
    return withChanges(text, changes);
}

}  // namespace TrellanSimulation
