// The update elements in the target file's document and in its text, and the new values that updates give them.
#include "libZoInventoryTree/ZoNInventoryIDs.h"
#include "simulation/libZoInventoryTree/AddressText.h"
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
    const auto id = parameter == nullptr ? std::nullopt : parameter->value.number();
    if (!id || *id > std::numeric_limits<unsigned>::max()) {
        return std::nullopt;
    }
    return elementKey(info->getParent()->getAddress(), static_cast<unsigned>(*id));
}

// The item's parameter as the document has it.
std::optional<Json> parameterOf(const Json& item, const std::string& name)
{
    const auto parameters = item.find("parameters");
    return parameters ? parameters->find(name) : std::nullopt;
}

// Whether `value` is written as `other` would be; 1.0 equals 1, but is no value of a parameter.
bool isSame(const Json& value, const NewValue& other)
{
    const auto* text = std::get_if<std::string>(&other);
    return text == nullptr ? value.unsignedNumber() == std::get<std::uint64_t>(other) : value.text() == *text;
}

// The item at this position of a list that the document may not have.
std::optional<Json> itemAt(const std::optional<Json>& items, std::size_t position)
{
    return items && position < items->size() ? std::optional((*items)[position]) : std::nullopt;
}

enum class ItemMember { items, parameters, other };

// Goes to the value of the member that the cursor stands at. Its name does not lie on the stack of the walk.
[[gnu::noinline]] ItemMember enterMember(JsonCursor& cursor)
{
    const std::string name = cursor.takeName().name;
    return name == "items" ? ItemMember::items : name == "parameters" ? ItemMember::parameters : ItemMember::other;
}

}  // namespace

void TargetFile::installElement(const std::string& key, const UpdateContent& content)
{
    unused.reset();
    const auto [first, end] = foundElements().equal_range(key);
    for (auto element = first; element != end; ++element) {
        install(element->second, content);
    }
}

void TargetFile::install(Element& element, const UpdateContent& content)
{
    const auto set = [&](const std::string& name, const NewValue& value) {
        const auto change = element.changes.find(name);
        const auto parameter = parameterOf(element.item, name);
        const bool isSet =
            change != element.changes.end() ? change->second == value : parameter && isSame(*parameter, value);
        if (!isSet) {
            element.changes[name] = value;
            changed = true;
        }
    };
    if (content.checksum) {
        set("CHECKSUM_CRC32", std::uint64_t{*content.checksum});
    }
    if (content.version) {
        set("VERSION", *content.version);
    }
    set("VALID", std::uint64_t{1});
}

// Searched only when an update asks for one.
TargetFile::Elements& TargetFile::foundElements()
{
    if (!elements) {
        const auto tree = unused ? nullptr : buildTree(treeSource(), Place(Place(), "tree"));
        Elements found;
        collectElements(unused ? *unused : *tree, treeSource(), found);
        elements = std::move(found);
    }
    return *elements;
}

// Not a part of the walk, on whose stack it would lie at every level.
[[gnu::noinline]] void TargetFile::noteElement(const TreeItem& item, const Json& source, Elements& found)
{
    if (const auto key = keyOf(item)) {
        found.emplace(*key, Element{source, {}});
    }
}

// Walks `source` along with the tree that was built from it.
void TargetFile::collectElements(const TreeItem& item, const Json& source, Elements& found)
{
    noteElement(item, source, found);
    const ZoCInventoryItem* below = item.getFirstSubItem();
    const auto items = source.find("items");
    for (std::size_t position = 0; below != nullptr; below = below->getNext(), ++position) {
        collectElements(static_cast<const TreeItem&>(*below), (*items)[position], found);
    }
}

void TargetFile::addChanges(TreeItem& tree, const Json& source)
{
    std::unordered_map<const void*, const MemberChanges*> ofItems;
    for (const auto& [key, element] : *elements) {
        if (!element.changes.empty()) {
            ofItems[element.item.identity()] = &element.changes;
        }
    }
    const auto add = [&](const auto& again, TreeItem& item, const Json& itemSource) -> void {
        if (const auto changes = ofItems.find(itemSource.identity()); changes != ofItems.end()) {
            for (const auto& change : *changes->second) {
                const auto name = parseParameterAddress(change.first);
                std::visit([&](const auto& content) { item.setParameter(*name, content); }, change.second);
            }
        }
        const auto items = itemSource.find("items");
        std::size_t position = 0;
        item.forEachBelow([&](TreeItem& below) { again(again, below, (*items)[position++]); });
    };
    add(add, tree, source);
}

// Walks the item whose object the cursor stands at along with the document. Of members that stand twice the last one is
// in the document: what is found in an earlier one, which may be anything, is found again.
void TargetFile::findInText(const Json& item, JsonCursor& cursor, Parameters& found)
{
    for (bool more = cursor.enter(); more; more = cursor.goOn()) {
        const ItemMember member = enterMember(cursor);
        if (member == ItemMember::parameters) {
            found[item.identity()] = cursor.offset();
        }
        if (member != ItemMember::items || !cursor.isArray()) {
            cursor.skip();
            continue;
        }
        const auto items = item.find("items");
        std::size_t position = 0;
        for (bool further = cursor.enter(); further; further = cursor.goOn()) {
            const auto below = itemAt(items, position++);
            below&& cursor.isObject() ? findInText(*below, cursor, found) : cursor.skip();
        }
    }
}

std::string TargetFile::changedText() const
{
    Parameters parameters;
    JsonCursor cursor(text);
    cursor.forEachMember([&](const JsonCursor::Member& member) {
        member.name == "tree" && cursor.isObject() ? findInText(treeSource(), cursor, parameters) : cursor.skip();
    });
    std::map<std::size_t, MemberChanges> changes;
    for (const auto& [key, element] : *elements) {
        if (!element.changes.empty()) {
            changes.emplace(parameters.at(element.item.identity()), element.changes);
        }
    }
    return withChanges(text, changes);
}

}  // namespace TrellanSimulation
