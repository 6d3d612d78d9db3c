// Reading of the archive description file: its "info", and its file entries one by one.
#include <algorithm>

#include "archive/DescriptionRules.h"
#include "archive/ObjectMembers.h"
#include "archive/Properties.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/BinaryFile.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateArchive;

ZoCUpdateArchive::ZoCUpdateArchive(const ZoCTrellanUpdater* owner, const ZoNTrellanUpdater::ZoTOptions* options)
    : owner(owner), options(options)
{
}

bool ZoCUpdateArchive::fail(const char* format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    owner->vprint(format, arguments);
    va_end(arguments);
    return false;
}

bool ZoCUpdateArchive::read(ZoCErrorListPool& errors)
{
    return readDescriptionFile(errors) && readUpdateFiles();
}

bool ZoCUpdateArchive::readDescriptionFile(ZoCErrorListPool& errors)
{
    return readDescriptionFileJson(errors, descriptionPath());
}

bool ZoCUpdateArchive::readDescriptionFileJson(ZoCErrorListPool&, std::string path)
{
    ZoNJson::json document;
    std::string message;
    if (readDocument(path, document, message) != DescriptionState::read) {
        return fail("%s", message.c_str());
    }
    return readInfo(document, rules()) && rules().checkFiles(document) && readFileEntries(document["files"]);
}

DescriptionState ZoCUpdateArchive::readDocument(const std::string& path, ZoNJson::json& document,
                                                std::string& message) const
{
    const BinaryFile file = openForReading(path);
    if (!file) {
        owner->sprint(message, "ERROR: Cannot open archive description file %s\n", path.c_str());
        return DescriptionState::notOpened;
    }
    document = ZoNJson::json::parse(file.get());
    if (document.is_invalid()) {
        owner->sprint(message, "ERROR: The archive description file %s is corrupt. Invalid JSON data.\n", path.c_str());
        return DescriptionState::noJson;
    }
    return DescriptionState::read;
}

DescriptionRules ZoCUpdateArchive::rules() const
{
    return DescriptionRules([this](const DescriptionFault& fault) {
        owner->print("%s", fault.message.c_str());
        return false;
    });
}

bool ZoCUpdateArchive::checkOptionalProperties(const ZoNJson::json& object, std::uint32_t entry,
                                               std::int32_t board) const
{
    return rules().checkOptionalProperties(object, entry, board);
}

bool ZoCUpdateArchive::readInfo(const ZoNJson::json& document, const DescriptionRules& infoRules)
{
    archiveVariant = ZoCString();
    return infoRules.checkInfo(document, [this](const std::string& key, const ZoNJson::json& text) {
        if (key == "formatVersion") {
            formatVersion = toVersion(text);
        } else if (key == "archiveVersion") {
            archiveVersion = toVersion(text);
        } else if (key == "productName") {
            productName = toString(text);
        } else if (key == "archiveVariant") {
            archiveVariant = toString(text);
        } else {
            archiveName = toString(text);
        }
    });
}

bool ZoCUpdateArchive::readFileEntries(const ZoNJson::json& entries)
{
    files.clear();
    ++generation;
    maxSequence = 0;
    unsupportedElements = 0;
    const DescriptionRules entryRules = rules();
    std::uint32_t number = 0;
    files.reserve(entries.size());
    for (const ObjectMembers entry : entries) {
        switch (entryRules.checkEntry(entry, number)) {
            case EntryVerdict::accepted:
                addFile(entry, number);
                break;
            case EntryVerdict::passedOver:
                owner->print("WARNING: File entry %u is not supported. Ignoring this entry.\n", number);
                ++unsupportedElements;
                break;
            case EntryVerdict::refused:
                return false;
        }
        ++number;
    }
    return true;
}

void ZoCUpdateArchive::addFile(const ObjectMembers& entry, std::uint32_t number)
{
    files.push_back(makeUpdateFile(entry));
    files.back().entry = number;
    maxSequence = std::max(maxSequence, files.back().sequence);
}

ZoSUpdateFile ZoCUpdateArchive::makeUpdateFile(const ObjectMembers& entry) const
{
    ZoSUpdateFile file;
    file.name = toString(entry[Property::name]);
    file.sequence = static_cast<unsigned>(entry[Property::sequence]);
    file.hasTargetPath = statesTargetPath(entry);
    if (!entry.has(Property::version)) {
        file.version = archiveVersion;
    } else if (!entry[Property::version].is_null()) {
        file.version = toVersion(entry[Property::version]);
    }
    if (entry.has(Property::checksumCrc32)) {
        file.checksumCrc32 = static_cast<unsigned>(entry[Property::checksumCrc32]);
    }
    file.statesChecksum = file.checksumCrc32 != notAvailable;
    if (entry.has(Property::mode) && std::string(entry[Property::mode]) == "upgrade") {
        file.mode = UpdateMode::upgrade;
    }
    file.jsonEntry = entry.object();
    return file;
}
