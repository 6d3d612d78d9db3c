// The rules of the description and its file entries, in the order in which the reader applies them.
#include "archive/DescriptionRules.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "archive/ObjectMembers.h"
#include "archive/Properties.h"

namespace ZoNUpdateArchive {

namespace {

using ZoNJson::json;
using Test = bool (json::*)() const noexcept;

constexpr std::uint8_t supportedFormat = 1;                     // first number of the format version
constexpr unsigned long long firstUnsupportedFeatureLevel = 3;  // entries from this level on need a newer library

struct PropertyType {
    Property property;
    Test accepted[3];  // the accepted types; unused places are null
};

constexpr Test unsignedInteger = &json::is_number_unsigned;
constexpr Test string = &json::is_string;
constexpr Test array = &json::is_array;
constexpr Test null = &json::is_null;

// In the order of the checks: of several properties with a wrong type, the first one is named.
constexpr PropertyType propertyTypes[] = {
    {Property::mode, {string}},
    {Property::checksumCrc32, {unsignedInteger}},
    {Property::version, {string, null}},
    {Property::swCompatibilityId, {unsignedInteger, array}},
    {Property::hwCompatibilityId, {unsignedInteger, array}},
    {Property::targetPath, {string}},
    {Property::id, {unsignedInteger}},
    {Property::boardId, {unsignedInteger, array}},
    {Property::boardVariant, {null, string, array}},
    {Property::boardType, {string, array}},
};

// What the elements of array properties may be, in the order of the checks: the first bad property is named.
constexpr PropertyType elementTypes[] = {
    {Property::boardType, {string}},
    {Property::boardVariant, {string, null}},
    {Property::boardId, {unsignedInteger}},
    {Property::hwCompatibilityId, {unsignedInteger}},
    {Property::swCompatibilityId, {unsignedInteger}},
};

// What belongs to the file, not to one of its boards.
constexpr Property fileProperties[] = {Property::version, Property::checksumCrc32, Property::mode};

// From here on properties belong to boards.
constexpr Property firstOfBoard = Property::swCompatibilityId;

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
    const auto first = object == DescriptionObject::entry ? Property::name : firstOfBoard;
    for (auto property = static_cast<std::size_t>(first); property < propertyCount; ++property) {
        members.push_back(nameOf(static_cast<Property>(property)));
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

    void fault(const PropertyMessage& message, Property property, const std::string& place = {})
    {
        const std::string pointer = pointerTo(nameOf(property)) + place;
        if (isOfBoard()) {
            fault(pointer, message.ofBoard, number(), nameOf(property), boardNumber());
        } else {
            fault(pointer, message.ofEntry, number(), nameOf(property));
        }
    }

    void add(const Report& other)
    {
        clean = clean && other.clean;
        wantsMore = other.wantsMore;  // this one did before
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
    void note(const ObjectMembers& object)
    {
        const bool id = object.has(Property::id);
        const bool targetPath = object.has(Property::targetPath);
        hasId |= id;
        hasTargetPath |= targetPath;
        everyOneHasTarget &= id || targetPath;
    }

    bool hasId = false;
    bool hasTargetPath = false;
    bool everyOneHasTarget = true;
};

EntryVerdict DescriptionRules::checkEntry(const ObjectMembers& entry, std::uint32_t number) const
{
    Report report(taker, static_cast<std::int32_t>(number));
    if (!entry.object().is_object()) {
        report.fault(report.pointerTo(), "ERROR: File entry %u is invalid.\n", number);
        return EntryVerdict::refused;
    }
    if (entry.has(Property::featureLevel)) {
        const json& featureLevel = entry[Property::featureLevel];
        if (!featureLevel.is_number_unsigned()) {
            report.fault(wrongValue, Property::featureLevel);
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

void DescriptionRules::checkMandatoryProperties(const ObjectMembers& entry, Report& report)
{
    bool isMissing = false;
    const auto fault = [&](const std::string& property) {
        if (report.goesOn()) {
            report.fault(report.pointerTo(property),
                         "ERROR: File entry %u is invalid. A mandatory property is missing or invalid.\n",
                         report.number());
        }
    };
    const auto require = [&](Property property, bool isSound) {
        if (!entry.has(property)) {
            isMissing = true;
        } else if (!isSound) {
            fault(nameOf(property));
        }
    };
    require(Property::name, entry.hasString(Property::name));
    require(Property::sequence, entry.hasUnsigned(Property::sequence));
    if (entry.has(Property::boards)) {
        const json& boards = entry[Property::boards];
        require(Property::boards, boards.is_array() && boards.size() != 0 && !entry.has(Property::boardType));
    } else {
        require(Property::boardType, true);
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

void DescriptionRules::checkProperties(const ObjectMembers& object, Report& report)
{
    for (const PropertyType& type : propertyTypes) {
        if (report.goesOn() && object.has(type.property) && !isAccepted(object[type.property], type)) {
            report.fault(wrongType, type.property);
        }
    }
    for (const PropertyType& type : elementTypes) {
        if (report.goesOn() && object.has(type.property)) {
            if (const int position = badElement(object[type.property], type); position >= 0) {
                report.fault(wrongElement, type.property, "/" + std::to_string(position));
            }
        }
    }
    if (report.goesOn() && object.hasString(Property::version) && !isVersion(object[Property::version])) {
        report.fault(wrongValue, Property::version);
    }
    if (report.goesOn() && object.hasString(Property::mode)) {
        const std::string mode(object[Property::mode]);
        if (mode != "standard" && mode != "upgrade") {
            report.fault(wrongValue, Property::mode);
        }
    }
    if (!report.isOfBoard()) {
        return;
    }
    for (const Property property : fileProperties) {
        if (report.goesOn() && object.has(property)) {
            report.fault(report.pointerTo(nameOf(property)),
                         "ERROR: File entry %u is invalid. \"boards\" element %u is invalid. Properties \"version\", "
                         "\"checksumCrc32\" and \"mode\" must not be specified inside a \"boards\" element.\n",
                         report.number(), report.boardNumber());
        }
    }
}

void DescriptionRules::checkBoards(const ObjectMembers& entry, Report& report) const
{
    static const json noBoards;
    Targets ofEntry;
    ofEntry.note(entry);
    Targets all = ofEntry;
    const json& boards = entry.has(Property::boards) ? entry[Property::boards] : noBoards;
    all.everyOneHasTarget = boards.size() != 0;
    std::int32_t index = 0;
    for (const ObjectMembers board : boards) {
        Report ofBoard(taker, static_cast<std::int32_t>(report.number()), index++);
        if (!board.has(Property::boardType)) {
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
