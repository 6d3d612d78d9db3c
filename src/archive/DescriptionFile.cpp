// Reading of the archive description file: its "info", and its file entries one by one.
#include <algorithm>

#include "archive/Properties.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/BinaryFile.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateArchive;

namespace {

constexpr std::uint8_t supportedFormat = 1;                     // first number of the format version
constexpr unsigned long long firstUnsupportedFeatureLevel = 3;  // entries from this level on need a newer library

}  // namespace

// Where an entry and its boards say "id" and "targetPath".
struct ZoCUpdateArchive::Targets {
    bool hasBoards = false;
    bool entryHasTarget = false;  // the entry itself has one of them
    bool everyBoardHasTarget = true;
    bool hasId = false;          // anywhere
    bool hasTargetPath = false;  // anywhere
};

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
    return readDescriptionFileJson(errors, options->archivePath + "/" + options->descriptionFileName);
}

bool ZoCUpdateArchive::readDescriptionFileJson(ZoCErrorListPool&, std::string path)
{
    BinaryFile file = openForReading(path);
    if (!file) {
        return fail("ERROR: Cannot open archive description file %s\n", path.c_str());
    }
    const ZoNJson::json document = ZoNJson::json::parse(file.get());
    file.reset();
    if (document.is_invalid()) {
        return fail("ERROR: The archive description file %s is corrupt. Invalid JSON data.\n", path.c_str());
    }
    return readInfo(document) && readFileEntries(document);
}

bool ZoCUpdateArchive::readInfo(const ZoNJson::json& document)
{
    if (!document.contains("info") || !document["info"].is_object()) {
        return fail("ERROR: The archive description file is corrupt. Property \"info\" is missing or invalid.\n");
    }
    const ZoNJson::json& info = document["info"];
    if (!readInfoVersion(info, "formatVersion", formatVersion)) {
        return false;
    }
    if (formatVersion.getMar() != supportedFormat) {
        return fail(
            "ERROR: This firmware archive cannot be processed by the installed firmware.\n"
            "       You might need to install another (newer) firmware first.\n");
    }
    if (!readInfoVersion(info, "archiveVersion", archiveVersion) || !readInfoString(info, "productName", productName)) {
        return false;
    }
    archiveVariant = ZoCString();
    if (info.contains("archiveVariant")) {
        if (!info["archiveVariant"].is_string()) {
            return fail("ERROR: The archive description file is corrupt. \"archiveVariant\" is invalid.\n");
        }
        archiveVariant = toString(info["archiveVariant"]);
    }
    return readInfoString(info, "archiveName", archiveName);
}

bool ZoCUpdateArchive::readInfoVersion(const ZoNJson::json& info, const char* key, ZoCVersion& version) const
{
    if (!hasString(info, key)) {
        return fail("ERROR: The archive description file is corrupt. \"%s\" is missing or invalid.\n", key);
    }
    version = toVersion(info[key]);
    if (version.getAsULong64() == 0) {
        return fail("ERROR: The archive description file is corrupt. \"%s\" is invalid.\n", key);
    }
    return true;
}

bool ZoCUpdateArchive::readInfoString(const ZoNJson::json& info, const char* key, ZoCString& text) const
{
    if (!hasString(info, key)) {
        return fail("ERROR: The archive description file is corrupt. \"%s\" is missing or invalid.\n", key);
    }
    text = toString(info[key]);
    return true;
}

bool ZoCUpdateArchive::readFileEntries(const ZoNJson::json& document)
{
    if (!document.contains("files") || !document["files"].is_array()) {
        return fail("ERROR: The archive description file is corrupt. Property \"files\" is missing or invalid.\n");
    }
    files.clear();
    maxSequence = 0;
    unsupportedElements = 0;
    std::uint32_t number = 0;
    for (const ZoNJson::json& entry : document["files"]) {
        if (!readFileEntry(entry, number++)) {
            return false;
        }
    }
    return true;
}

bool ZoCUpdateArchive::readFileEntry(const ZoNJson::json& entry, std::uint32_t number)
{
    if (!entry.is_object()) {
        return fail("ERROR: File entry %u is invalid.\n", number);
    }
    if (entry.contains("featureLevel")) {
        const ZoNJson::json& featureLevel = entry["featureLevel"];
        if (!featureLevel.is_number_unsigned()) {
            return fail("ERROR: File entry %u is invalid. Property \"featureLevel\" is invalid.\n", number);
        }
        if (static_cast<unsigned long long>(featureLevel) >= firstUnsupportedFeatureLevel) {
            owner->print("WARNING: File entry %u is not supported. Ignoring this entry.\n", number);
            ++unsupportedElements;
            return true;
        }
    }
    Targets targets;
    if (!checkMandatoryProperties(entry, number) || !checkOptionalProperties(entry, number, -1) ||
        !checkBoards(entry, number, targets) || !checkTargets(targets, number)) {
        return false;
    }
    files.push_back(makeUpdateFile(entry, targets));
    maxSequence = std::max(maxSequence, files.back().sequence);
    return true;
}

bool ZoCUpdateArchive::checkMandatoryProperties(const ZoNJson::json& entry, std::uint32_t number) const
{
    const bool hasBoards = entry.contains("boards");
    const bool namesBoards = hasBoards != entry.contains("boardType") &&
                             (!hasBoards || (entry["boards"].is_array() && entry["boards"].size() != 0));
    if (!hasString(entry, "name") || !hasUnsigned(entry, "sequence") || !namesBoards) {
        return fail("ERROR: File entry %u is invalid. A mandatory property is missing or invalid.\n", number);
    }
    return true;
}

bool ZoCUpdateArchive::checkBoards(const ZoNJson::json& entry, std::uint32_t number, Targets& targets) const
{
    targets.hasBoards = entry.contains("boards");
    targets.hasId = entry.contains("id");
    targets.hasTargetPath = entry.contains("targetPath");
    targets.entryHasTarget = targets.hasId || targets.hasTargetPath;
    if (!targets.hasBoards) {
        return true;
    }
    std::int32_t index = 0;
    for (const ZoNJson::json& board : entry["boards"]) {
        if (!board.is_object() || !board.contains("boardType")) {
            return fail("ERROR: File entry %u is invalid. \"boards\"-entry %u is invalid.\n", number,
                        static_cast<unsigned>(index));
        }
        if (!checkOptionalProperties(board, number, index++)) {
            return false;
        }
        const bool hasId = board.contains("id");
        const bool hasTargetPath = board.contains("targetPath");
        targets.hasId |= hasId;
        targets.hasTargetPath |= hasTargetPath;
        targets.everyBoardHasTarget &= hasId || hasTargetPath;
    }
    return true;
}

bool ZoCUpdateArchive::checkTargets(const Targets& targets, std::uint32_t number) const
{
    if (targets.hasId && targets.hasTargetPath) {
        return fail(
            "ERROR: File entry %u is invalid. Properties \"id\" and \"targetPath\" must not be specified at the same "
            "time.\n",
            number);
    }
    const bool boardsSuffice = targets.hasBoards && targets.everyBoardHasTarget;
    if (!boardsSuffice && !targets.entryHasTarget) {
        return fail("ERROR: File entry %u is invalid. Either \"id\" or \"targetPath\" must be specified.\n", number);
    }
    return true;
}

ZoSUpdateFile ZoCUpdateArchive::makeUpdateFile(const ZoNJson::json& entry, const Targets& targets) const
{
    ZoSUpdateFile file;
    file.name = toString(entry["name"]);
    file.sequence = static_cast<unsigned>(entry["sequence"]);
    file.hasTargetPath = targets.hasTargetPath;
    if (!entry.contains("version")) {
        file.version = archiveVersion;
    } else if (!entry["version"].is_null()) {
        file.version = toVersion(entry["version"]);
    }
    if (entry.contains("checksumCrc32")) {
        file.checksumCrc32 = static_cast<unsigned>(entry["checksumCrc32"]);
    }
    if (entry.contains("mode") && std::string(entry["mode"]) == "upgrade") {
        file.mode = UpdateMode::upgrade;
    }
    file.jsonEntry = entry;
    return file;
}
