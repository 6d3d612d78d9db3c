// An element from the library's list and from its inspector, joined into one object.
#include "tool/documents/ElementRecords.h"

#include "json/Json.h"
#include "tool/documents/ElementOutcome.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;
using ZoNTrellanInspector::ZoTElement;
using ZoNTrellanInspector::ZoTFile;
using ZoNTrellanInspector::ZoTKeys;
using ZoNTrellanInspector::ZoTState;
using ZoNTrellanUpdater::ZoTUpdateElement;

// An object in the making. Every key is new, so that none has to be looked for.
class Members {
public:
    template <typename Value>
    void add(const char* key, Value&& value)
    {
        members.Container::emplace_back(key, std::forward<Value>(value));
    }

    ordered_json take() { return std::move(members); }

private:
    using Container = ordered_json::object_t::Container;
    ordered_json::object_t members;
};

ordered_json valueOrNull(bool known, const ordered_json& value)
{
    return known ? value : ordered_json();
}

void addListed(Members& members, const ZoTUpdateElement& element)
{
    members.add("index", element.index);
    members.add("boardType", element.boardType);
    members.add("serialNumber", element.serialNumber);
    members.add("boardName", element.boardName);
    members.add("unitDescription", element.unitDescription);
    members.add("slot", element.slot);
    members.add("slotCount", element.slotCount);
    members.add("displayName", element.displayName);
    members.add("displayType", element.displayType);
    members.add("isFileSystemElement", element.isFileSystemElement);
    members.add("valid", element.valid);
    members.add("active", element.active);
    members.add("installedVersion", element.installedVersion);
    members.add("custom", element.custom);
    members.add("disabled", element.disabled);
    members.add("phase", element.phase);
    members.add("hasUpdateFile", element.hasUpdateFile);
    members.add("updateFileIndex", element.updateFileIndex);
    members.add("availableVersion", element.availableVersion);
    members.add("checksumDiffers", element.checksumDiffers);
}

void addFile(Members& members, ZoITrellanInspector& inspector, const ZoTElement& element)
{
    if (element.filePosition < 0) {
        members.add("updateFile", nullptr);
        members.add("availableChecksum", nullptr);
    } else {
        const ZoTFile& file = inspector.getFile(static_cast<unsigned>(element.filePosition));
        members.add("updateFile", file.name);
        members.add("availableChecksum", valueOrNull(file.hasChecksum, file.checksum));
    }
    members.add("downgrade", element.isDowngrade);
    members.add("state", stateName(element.state));
}

}  // namespace

ordered_json keysRecord(const ZoTKeys& keys)
{
    Members members;
    members.add("boardType", keys.boardType);
    members.add("boardVariant", valueOrNull(keys.hasBoardVariant, keys.boardVariant));
    members.add("boardId", keys.boardId);
    members.add("hwCompatibilityId", keys.hwCompatibilityId);
    members.add("swCompatibilityId", keys.swCompatibilityId);
    members.add("id", valueOrNull(!keys.isFile, keys.id));
    members.add("targetPath", valueOrNull(keys.isFile, keys.targetPath));
    return members.take();
}

ElementRecords::ElementRecords(ZoITrellanUpdater& updater, ZoITrellanInspector& inspector, bool withFiles)
    : inspector(inspector), withFiles(withFiles)
{
    ZoTUpdateElement* array = nullptr;
    updater.getUpdateElementList(array, size);
    list.reset(array);
}

ordered_json ElementRecords::at(unsigned index) const
{
    const ZoTElement& element = inspector.getElement(index);
    Members members;
    addListed(members, list[index]);
    members.add("name", element.name);
    members.add("keys", keysRecord(inspector.getElementKeys(index)));
    members.add("installedChecksum", valueOrNull(element.hasInstalledChecksum, element.installedChecksum));
    if (withFiles) {
        addFile(members, inspector, element);
    }
    if (element.state > ZoTState::UPDATE) {
        members.add("errors", elementErrors(inspector, index));
    }
    return members.take();
}

}  // namespace TrellanTool
