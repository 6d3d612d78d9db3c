// The rules of the description and its file entries, in the order in which the reader applies them.
#include "archive/DescriptionRules.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "archive/Properties.h"

namespace ZoNUpdateArchive {

namespace {

using ZoNJson::json;
using Test = bool (json::*)() const noexcept;

constexpr std::uint8_t supportedFormat = 1;                     // first number of the format version
constexpr unsigned long long firstUnsupportedFeatureLevel = 3;  // entries from this level on need a newer library

struct PropertyType {
    const char* name;
    Test accepted[3];  // the accepted types; unused places are null
};

constexpr Test unsignedInteger = &json::is_number_unsigned;
constexpr Test string = &json::is_string;
constexpr Test array = &json::is_array;
constexpr Test null = &json::is_null;

// In the order of the checks: of several properties with a wrong type, the first one is named.
constexpr PropertyType propertyTypes[] = {
    {"mode", {string}},
    {"checksumCrc32", {unsignedInteger}},
    {"version", {string, null}},
    {"swCompatibilityId", {unsignedInteger, array}},
    {"hwCompatibilityId", {unsignedInteger, array}},
    {"targetPath", {string}},
    {"id", {unsignedInteger}},
    {"boardId", {unsignedInteger, array}},
    {"boardVariant", {null, string, array}},
    {"boardType", {string, array}},
};

// What the elements of array properties may be, in the order of the checks: the first bad property is named.
constexpr PropertyType elementTypes[] = {
    {"boardType", {string}},
    {"boardVariant", {string, null}},
    {"boardId", {unsignedInteger}},
    {"hwCompatibilityId", {unsignedInteger}},
    {"swCompatibilityId", {unsignedInteger}},
};

// What belongs to the file, not to one of its boards.
constexpr const char* fileProperties[] = {"version", "checksumCrc32", "mode"};

bool isAccepted(const json& value, const PropertyType& type)
{
    for (const Test test : type.accepted) {
        if (test != nullptr && (value.*test)()) {
            return true;
        }
    }
    return false;
}

// Position of the first element that is not accepted; -1 when there is none, as in a value that is no array.
int badElement(const json& value, const PropertyType& type)
{
    int position = 0;
    for (const json& element : value) {
        if (!isAccepted(element, type)) {
            return position;
        }
        ++position;
    }
    return -1;
}

bool isVersion(const json& value)
{
    return toVersion(value).getAsULong64() != 0;
}

// The message for a property of the entry itself, or of one of its boards: the boards' words differ from rule to rule.
struct PropertyMessage {
    const char* ofEntry;  // takes entry and property
    const char* ofBoard;  // takes entry, property and board
};

constexpr PropertyMessage wrongType{
    "ERROR: File entry %u is invalid. Property \"%s\" has an invalid value.\n",
    "ERROR: File entry %u is invalid. Property \"%s\" of \"boards\"-element %u has an invalid value.\n"};
constexpr PropertyMessage wrongElement{
    "ERROR: File entry %u is invalid. Property \"%s\" has invalid elements.\n",
    "ERROR: File entry %u is invalid. Property \"%s\" of \"boards\" element %u has invalid elements.\n"};
constexpr PropertyMessage wrongValue{
    "ERROR: File entry %u is invalid. Property \"%s\" is invalid.\n",
    "ERROR: File entry %u is invalid. Property \"%s\" of \"boards\" element %u is invalid.\n"};

}  // namespace

std::vector<const char*> membersOf(DescriptionObject object)
{
    switch (object) {
        case DescriptionObject::whole:
            return {"info", "files"};
        case DescriptionObject::info:
            return {"formatVersion", "archiveVersion", "productName", "archiveVariant", "archiveName"};
        default:
            break;
    }
    std::vector<const char*> members;
    if (object == DescriptionObject::entry) {
        members = {"name", "sequence", "boards", "featureLevel"};
        members.insert(members.end(), std::begin(fileProperties), std::end(fileProperties));
    }
    for (const PropertyType& type : propertyTypes) {
        const bool isOfFile = std::any_of(std::begin(fileProperties), std::end(fileProperties),
                                          [&](const std::string_view property) { return property == type.name; });
        if (!isOfFile) {
            members.push_back(type.name);
        }
    }
    return members;
}

// Tells the taker of faults and remembers what it has said.
class DescriptionRules::Report {
public:
    explicit Report(const Taker& taker, std::int32_t entry = -1, std::int32_t board = -1)
        : taker(taker), entry(entry), board(board)
    {
    }

    bool isClean() const { return clean; }

    std::uint32_t number() const { return static_cast<std::uint32_t>(entry); }

    bool isOfBoard() const { return board >= 0; }
    unsigned boardNumber() const { return static_cast<unsigned>(board); }

    // JSON Pointer to the entry or board object, or to one of its members.
    std::string pointerTo(const std::string& property = {}) const
    {
        std::string pointer = "/files/" + std::to_string(number());
        if (isOfBoard()) {
            pointer += "/boards/" + std::to_string(board);
        }
        return property.empty() ? pointer : pointer + "/" + property;
    }

    // Whether further faults are wanted.
    bool goesOn() const { return wantsMore; }

    void fault(const std::string& pointer, const char* format, ...)
    {
        char message[512];  // no message is as long: all it names are numbers and names of properties
        va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(message, sizeof message, format, arguments);
        va_end(arguments);
        clean = false;
        wantsMore = taker({entry, board, pointer, message});
    }

    void fault(const PropertyMessage& message, const char* property, const std::string& place = {})
    {
        const std::string pointer = pointerTo(property) + place;
        if (isOfBoard()) {
            fault(pointer, message.ofBoard, number(), property, boardNumber());
        } else {
            fault(pointer, message.ofEntry, number(), property);
        }
    }

    void add(const Report& other)
    {
        clean = clean && other.clean;
        wantsMore = wantsMore && other.wantsMore;
    }

private:
    const Taker& taker;
    const std::int32_t entry;
    const std::int32_t board;
    bool clean = true;
    bool wantsMore = true;
};

bool DescriptionRules::checkInfo(const json& document, const InfoReader& read) const
{
    Report report(taker);
    const bool hasInfo = document.contains("info");
    if (!hasInfo || !document["info"].is_object()) {
        report.fault(hasInfo ? "/info" : "",
                     "ERROR: The archive description file is corrupt. Property \"info\" is missing or invalid.\n");
        return false;
    }
    const json& info = document["info"];
    const auto checkString = [&](const char* key) {
        if (hasString(info, key)) {
            read(key, info[key]);
            return true;
        }
        report.fault(info.contains(key) ? std::string("/info/") + key : "/info",
                     "ERROR: The archive description file is corrupt. \"%s\" is missing or invalid.\n", key);
        return false;
    };
    const auto checkVersion = [&](const char* key) {
        if (!checkString(key)) {
            return false;
        }
        if (!isVersion(info[key])) {
            report.fault(std::string("/info/") + key,
                         "ERROR: The archive description file is corrupt. \"%s\" is invalid.\n", key);
            return false;
        }
        return true;
    };
    if (checkVersion("formatVersion") && toVersion(info["formatVersion"]).getMar() != supportedFormat) {
        report.fault("/info/formatVersion", "%s",
                     "ERROR: This firmware archive cannot be processed by the installed firmware.\n"
                     "       You might need to install another (newer) firmware first.\n");
    }
    if (report.goesOn()) {
        checkVersion("archiveVersion");
    }
    if (report.goesOn()) {
        checkString("productName");
    }
    if (report.goesOn() && info.contains("archiveVariant")) {
        if (info["archiveVariant"].is_string()) {
            read("archiveVariant", info["archiveVariant"]);
        } else {
            report.fault("/info/archiveVariant",
                         "ERROR: The archive description file is corrupt. \"archiveVariant\" is invalid.\n");
        }
    }
    if (report.goesOn()) {
        checkString("archiveName");
    }
    return report.isClean();
}

bool DescriptionRules::checkFiles(const json& document) const
{
    const bool hasFiles = document.contains("files");
    if (hasFiles && document["files"].is_array()) {
        return true;
    }
    Report report(taker);
    report.fault(hasFiles ? "/files" : "",
                 "ERROR: The archive description file is corrupt. Property \"files\" is missing or invalid.\n");
    return false;
}

// Where an entry and its boards say "id" and "targetPath".
struct DescriptionRules::Targets {
    void note(const json& object)
    {
        const bool id = object.contains("id");
        const bool targetPath = object.contains("targetPath");
        hasId |= id;
        hasTargetPath |= targetPath;
        everyOneHasTarget &= id || targetPath;
    }

    bool hasId = false;
    bool hasTargetPath = false;
    bool everyOneHasTarget = true;
};

EntryVerdict DescriptionRules::checkEntry(const json& entry, std::uint32_t number) const
{
    Report report(taker, static_cast<std::int32_t>(number));
    if (!entry.is_object()) {
        report.fault(report.pointerTo(), "ERROR: File entry %u is invalid.\n", number);
        return EntryVerdict::refused;
    }
    if (entry.contains("featureLevel")) {
        const json& featureLevel = entry["featureLevel"];
        if (!featureLevel.is_number_unsigned()) {
            report.fault(wrongValue, "featureLevel");
        } else if (static_cast<unsigned long long>(featureLevel) >= firstUnsupportedFeatureLevel) {
            return EntryVerdict::passedOver;
        }
    }
    if (report.goesOn()) {
        checkMandatoryProperties(entry, report);
    }
    if (report.goesOn()) {
        checkProperties(entry, report);
    }
    if (report.goesOn()) {
        checkBoards(entry, report);
    }
    return report.isClean() ? EntryVerdict::accepted : EntryVerdict::refused;
}

void DescriptionRules::checkMandatoryProperties(const json& entry, Report& report)
{
    bool isMissing = false;
    const auto fault = [&](const std::string& property) {
        if (report.goesOn()) {
            report.fault(report.pointerTo(property),
                         "ERROR: File entry %u is invalid. A mandatory property is missing or invalid.\n",
                         report.number());
        }
    };
    const auto require = [&](const char* key, bool isSound) {
        if (!entry.contains(key)) {
            isMissing = true;
        } else if (!isSound) {
            fault(key);
        }
    };
    require("name", hasString(entry, "name"));
    require("sequence", hasUnsigned(entry, "sequence"));
    const bool hasBoards = entry.contains("boards");
    if (hasBoards) {
        require("boards", entry["boards"].is_array() && entry["boards"].size() != 0 && !entry.contains("boardType"));
    } else {
        require("boardType", true);
    }
    if (isMissing) {
        fault("");
    }
}

bool DescriptionRules::checkOptionalProperties(const json& object, std::uint32_t entry, std::int32_t board) const
{
    Report report(taker, static_cast<std::int32_t>(entry), board);
    checkProperties(object, report);
    return report.isClean();
}

void DescriptionRules::checkProperties(const json& object, Report& report)
{
    for (const PropertyType& type : propertyTypes) {
        if (report.goesOn() && object.contains(type.name) && !isAccepted(object[type.name], type)) {
            report.fault(wrongType, type.name);
        }
    }
    for (const PropertyType& type : elementTypes) {
        if (report.goesOn() && object.contains(type.name)) {
            if (const int position = badElement(object[type.name], type); position >= 0) {
                report.fault(wrongElement, type.name, "/" + std::to_string(position));
            }
        }
    }
    if (report.goesOn() && hasString(object, "version") && !isVersion(object["version"])) {
        report.fault(wrongValue, "version");
    }
    if (report.goesOn() && hasString(object, "mode")) {
        const std::string mode(object["mode"]);
        if (mode != "standard" && mode != "upgrade") {
            report.fault(wrongValue, "mode");
        }
    }
    if (!report.isOfBoard()) {
        return;
    }
    for (const char* const property : fileProperties) {
        if (report.goesOn() && object.contains(property)) {
            report.fault(report.pointerTo(property),
                         "ERROR: File entry %u is invalid. \"boards\" element %u is invalid. Properties \"version\", "
                         "\"checksumCrc32\" and \"mode\" must not be specified inside a \"boards\" element.\n",
                         report.number(), report.boardNumber());
        }
    }
}

void DescriptionRules::checkBoards(const json& entry, Report& report) const
{
    Targets ofEntry;
    ofEntry.note(entry);
    Targets all = ofEntry;
    all.everyOneHasTarget = entry["boards"].size() != 0;
    std::int32_t index = 0;
    for (const json& board : entry["boards"]) {
        Report ofBoard(taker, static_cast<std::int32_t>(report.number()), index++);
        if (!board.is_object() || !board.contains("boardType")) {
            ofBoard.fault(ofBoard.pointerTo(), "ERROR: File entry %u is invalid. \"boards\"-entry %u is invalid.\n",
                          report.number(), ofBoard.boardNumber());
        } else {
            checkProperties(board, ofBoard);
        }
        all.note(board);
        report.add(ofBoard);
        if (!report.goesOn()) {
            return;
        }
    }
    if (all.hasId && all.hasTargetPath) {
        report.fault(
            report.pointerTo(),
            "ERROR: File entry %u is invalid. Properties \"id\" and \"targetPath\" must not be specified at the "
            "same time.\n",
            report.number());
    }
    if (report.goesOn() && !ofEntry.everyOneHasTarget && !all.everyOneHasTarget) {
        report.fault(report.pointerTo(),
                     "ERROR: File entry %u is invalid. Either \"id\" or \"targetPath\" must be specified.\n",
                     report.number());
    }
}

}  // namespace ZoNUpdateArchive
