// The rules of the archive description: what the reader refuses, where, and in which words.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "archive/ZoSUpdateFile.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateArchive {

class ObjectMembers;

// Something that breaks a rule.
struct DescriptionFault {
    std::int32_t entry;   // number of the file entry; -1: of none
    std::int32_t board;   // number of the element of its "boards"; -1: of none
    std::string pointer;  // JSON Pointer to the member that is wrong, or to the object in which one is missing
    std::string message;  // as the reader prints it
};

// What became of opening and parsing a description file.
enum class DescriptionState { read, notOpened, noJson };

// Takes what is found out about a description by those who want to know all that is wrong with it, in its order.
class DescriptionSurvey {
public:
    virtual ~DescriptionSurvey() = default;

    // It cannot be read at all. `message` is what the reader would print.
    virtual void takeUnread(const std::string& message) = 0;

    // What the reader would refuse; the fault that it would print comes first. `file` is the entry as it is handed to
    // takeRefused(), or has no name.
    virtual void takeFault(const DescriptionFault& fault, const ZoSUpdateFile& file) = 0;

    // An entry that has a fault, after its faults: as far as it is sound what it says of its file.
    virtual void takeRefused(ZoSUpdateFile file) = 0;

    // An entry that needs a newer library: its name, where it states one.
    virtual void takePassedOver(const ZoSUpdateFile& file) = 0;
};

// What becomes of a file entry.
enum class EntryVerdict {
    accepted,
    passedOver,  // it needs a newer library; nothing else of it was looked at
    refused      // it has a fault
};

// An object of a description, by what it describes.
enum class DescriptionObject { whole, info, entry, board };

// The names of the members that the format has for it.
std::vector<const char*> membersOf(DescriptionObject object);

// Checks a description, or a part of one. Each fault is given to the taker, the one that the reader names first: the
// taker decides whether the others are wanted too.
class DescriptionRules {
public:
    // Returns whether to go on.
    using Taker = std::function<bool(const DescriptionFault& fault)>;

    explicit DescriptionRules(Taker taker) : taker(std::move(taker)) {}

    // What takes the texts of "info" one by one, each before its value is judged.
    using InfoReader = std::function<void(const std::string& key, const ZoNJson::json& text)>;

    // Check the "info" of a document, and that it has "files". False when a fault was found.
    bool checkInfo(const ZoNJson::json& document, const InfoReader& read) const;
    bool checkFiles(const ZoNJson::json& document) const;

    EntryVerdict checkEntry(const ObjectMembers& entry, std::uint32_t number) const;

    // Checks the types and values of the optional properties of `object`: file entry number `entry` itself (`board` -1)
    // or the element `board` of its "boards". False when a fault was found.
    bool checkOptionalProperties(const ZoNJson::json& object, std::uint32_t entry, std::int32_t board) const;

private:
    struct Targets;
    class Report;

    static void checkMandatoryProperties(const ObjectMembers& entry, Report& report);
    static void checkProperties(const ObjectMembers& object, Report& report);
    void checkBoards(const ObjectMembers& entry, Report& report) const;

    Taker taker;
};

}  // namespace ZoNUpdateArchive
