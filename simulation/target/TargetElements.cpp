// The update elements in the target file's document and in its text, and the new values that updates give them.
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/libZoInventoryTree/TreeBuilder.h"
#include "simulation/target/TargetFile.h"

namespace TrellanSimulation {

namespace {

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

}  // namespace

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
        if (parameter != value || parameter.type() != value.type()) {  // 1.0 equals 1, but is no value of a parameter
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
