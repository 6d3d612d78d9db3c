// What an updater knows beyond the lists of the main header, for host tools that explain an update.
//
//   std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
//   std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(*updater));
//   updater->apply();
//   for (unsigned i = 0; i < inspector->getElementCount(); ++i) {
//       if (inspector->getElement(i).state == ZoNTrellanInspector::ZoTState::NO_FILE) { ... }
//   }
//
// An inspector looks and changes nothing, unless it is told to read the target anew. It may be asked before apply(),
// between apply() and run(), in a callback and after run(), and answers by what is known then. A host with several
// threads calls its operations as the updater's: one at a time. Compiles as C++11.
//
// Records are handed out by reference and belong to the inspector: later versions append members, so a host never makes
// one itself, nor an array of them. A reference holds until the same operation of the same inspector is called again,
// or the inspector is deleted. Enumerations may get further values. Texts are as they stand on the target or in the
// archive; they may hold any byte.
#ifndef ZOITRELLANINSPECTOR_H
#define ZOITRELLANINSPECTOR_H

#include <cstdint>
#include <string>
#include <vector>

#include "ZoITrellanUpdater.h"

namespace ZoNTrellanInspector {

// What becomes, or became, of an element. Before an update the first of NO_FILE to UPDATE that holds; run() of an
// update turns UPDATE into one of those behind it, element by element.
enum class ZoTState : std::uint32_t {
    NO_FILE = 0,       // no entry of the archive fits, or no archive was read
    CUSTOM = 1,        // a custom element, left out by ZoTOptions::disableCustomElements
    UP_TO_DATE = 2,    // the update is not required, and not forced
    EXCLUDED = 3,      // left out by disableUpdateElement
    BLOCKED = 4,       // the archive does not support the target
    UPDATE = 5,        // will be updated
    UPDATED = 6,       // was updated, without errors
    FAILED = 7,        // failed, or finished with errors
    CANCELLED = 8,     // not begun, since an earlier update of its board failed
    MISSING_FILE = 9,  // not begun, since its update file was missing
    NOT_STARTED = 10,  // not begun: the target could not be locked, or the update was stopped before
    RUNNING = 11       // begun, and not known to have ended: the update is at work, or was stopped
};

// Why an element is to get its file, whatever its state.
enum class ZoTNeed : std::uint32_t {
    NONE = 0,           // it need not, or has no file
    NOT_VALID = 1,      // what is installed is not valid
    NOT_IN_USE = 2,     // what is installed is not what the target works with
    NEWER_VERSION = 3,  // the file has a newer version
    OTHER_VERSION = 4,  // the file has another version, and replaces older and newer ones
    OTHER_CHECKSUM = 5  // the file has another checksum
};

// An element of the list that getUpdateElementList gives.
struct ZoTElement {
    std::uint32_t index;                // position in that list
    std::string name;                   // by which ZoTOptions::elementNames selects it
    std::string displayedSerialNumber;  // as its display name shows it, such as "16(1)"; empty for none
    std::string boardAddress;           // of its board in the inventory
    bool isListed;                      // the target lists it; false: a file that the flash drive does not have yet
    bool hasInstalledChecksum;          // the target gives one
    std::uint32_t installedChecksum;    // 0 without one
    std::int32_t filePosition;          // of its update file in the list of getFile; -1 without a file
    bool isDowngrade;                   // the file's version and the installed one are known, and the file's is lower
    ZoTState state;
    bool blocksUpdate;  // it has no file, and therefore the archive does not support the target
    ZoTNeed need;
};

// An entry of the archive as it relates to an element.
struct ZoTCandidate {
    std::uint32_t element;      // index of the element
    std::int32_t filePosition;  // of the entry's file in the list of getFile
    std::int32_t board;         // position in "boards" of the object that decides; -1: the entry has none
    bool isGiven;               // the element was given this file
    std::int32_t takenBy;  // where it was given another though this one fits: that one's filePosition; otherwise -1
};

// A criterion that an element does not meet.
struct ZoTUnmet {
    std::string
        criterion;  // boardType, boardVariant, boardId, kind, id, targetPath, hwCompatibilityId, swCompatibilityId
    std::string expected;  // JSON: a value, or an array of values one of which is to be met, as it stands in the entry,
                           // or the default of what is left out
    std::string actual;    // JSON: what the element has
};

// What an archive entry has to state to fit an element.
struct ZoTKeys {
    std::string boardType;
    bool hasBoardVariant;  // false: the variant is null
    std::string boardVariant;
    std::uint32_t boardId;
    std::uint32_t hwCompatibilityId;
    std::uint32_t swCompatibilityId;
    bool isFile;             // a file on the flash drive: a target path is stated, otherwise an id
    std::uint32_t id;        // 0 for a file
    std::string targetPath;  // "*": any; empty for what is no file
};

// One error of an element's update.
struct ZoTError {
    bool hasCode;  // false: a message of the library itself about a file on the flash drive, with nothing but its text
    std::uint32_t code;
    std::string text;          // without a line end
    std::uint32_t originNode;  // serial number of the board that reported it; 0: the host
    double time;               // seconds, by the clock of whoever reported it; 0: not known
    std::uint32_t mainModule;  // number of the module that reported it; 0: not known
    std::uint32_t subModule;
    std::string function;  // where it happened; empty: not known
    std::uint32_t line;
};

// An update file of the list that getUpdateFileList gives.
struct ZoTFile {
    std::uint32_t entry;  // position in "files" of the description, from 0; those that are passed over count too
    std::string name;
    std::string path;            // of the file: the archive's folder and the name
    std::uint32_t sequence;      // files with a smaller number are installed first
    bool isUpgrade;              // its "mode" is "upgrade": only an older version is replaced
    std::string version;         // of the content; empty when not known
    bool hasChecksum;            // the entry states one, or else the file's header
    std::uint32_t checksum;      // 0 without one
    bool statesChecksum;         // the entry states it
    bool isForFlashDrive;        // it has a target path
    std::uint32_t elementCount;  // elements that it was given to
};

// What an archive entry expects of an element, by one of its board objects: that for the type of the element's board is
// the one that decides. Each text is JSON (a value, or an array of values one of which is to be met), as it stands in
// the board object, or else in the entry, or else the default of what is left out; empty where no element can meet it.
struct ZoTFileKeys {
    std::int32_t board;                   // position in "boards" of the entry; -1: the entry has none
    std::vector<std::string> decidesFor;  // the board types for which it decides: those that no object before it has
    std::string boardType;
    std::string boardVariant;
    std::string boardId;
    std::string hwCompatibilityId;
    std::string swCompatibilityId;
    bool isFile;             // for a file on the flash drive: the target path counts, otherwise the id
    std::string id;          // empty for a file too
    std::string targetPath;  // empty for what is no file
};

// What kind of update file a file is by its content.
enum class ZoTFileKind : std::uint32_t {
    PLAIN = 0,  // none of the others
    BINARY = 1,
    INVENTORY_TREE = 2,
    BITSTREAM = 3,
    UNREADABLE = 4  // absent, no regular file, or not to be read
};

// What an update file says of itself.
struct ZoTFileHeader {
    ZoTFileKind kind;
    bool hasChecksum;              // the header states one; of a plain file it is the CRC-32 of its bytes
    std::uint32_t checksum;        // 0 without one
    std::string version;           // empty when not known
    bool hasHwCompatibilityRange;  // it states one; from 0 to 0 counts as none
    std::uint32_t minHwCompatibilityId;
    std::uint32_t maxHwCompatibilityId;
    bool hasSwCompatibilityRange;
    std::uint32_t minSwCompatibilityId;
    std::uint32_t maxSwCompatibilityId;
    std::string problem;  // why an unreadable file is none, for a person to read; empty for any other
};

enum class ZoTSeverity : std::uint32_t { ERROR = 0, WARNING = 1, NOTE = 2 };

// Something wrong, or worth a word, in an archive.
struct ZoTFinding {
    std::string rule;  // its name, such as "missing-file"
    ZoTSeverity severity;
    std::int32_t entry;    // position in "files" of the description, as ZoTFile::entry; -1: about no entry
    std::int32_t board;    // position in "boards" of the entry; -1: about no board object
    std::string name;      // of the entry's update file; of one of more than 256 bytes its beginning and "..."
    std::string pointer;   // JSON Pointer to the member or object that is meant
    std::string message;   // one sentence: what is wrong, and what to do about it
    bool isInDescription;  // false: nothing in the description is meant, and there is no pointer
    std::vector<std::uint32_t> coveredBy;  // of "unreachable" and "overlap": the entries that take what this one fits
    bool hasExample;                       // of "overlap": an element is known that an entry before this one takes
    ZoTKeys example;
};

// What became of reading a description.
enum class ZoTDescription : std::uint32_t {
    READ = 0,
    NOT_OPENED = 1,
    NO_JSON = 2  // none that the library reads: comments, for example, or text that is not UTF-8
};

// An object of a description, by what it describes.
enum class ZoTDescriptionObject : std::uint32_t { WHOLE = 0, INFO = 1, ENTRY = 2, BOARD = 3 };

// Is given, with the context that came along, how many bytes of how many have been read.
typedef void (*ZoTReadProgress)(void* context, std::uint64_t read, std::uint64_t all);

// What a later look at the target says of an element that was updated.
enum class ZoTVerdict : std::uint32_t {
    NOT_VERIFIED = 0,  // it was not updated, or neither checksums nor versions can be compared
    AGREES = 1,
    DIFFERS = 2,
    NOT_LISTED = 3,    // the target does not list it, such as a new file on the flash drive
    AFTER_RESTART = 4  // what the target lists differs, but is not active: the new content may become so with a restart
};

struct ZoTVerification {
    ZoTVerdict verdict;
    bool byChecksum;  // both give a checksum; otherwise, if both are known, the versions were compared
    std::uint32_t fileChecksum;
    std::uint32_t foundChecksum;
    std::string fileVersion;  // empty when not known
    std::string foundVersion;
};

// An item of a recorded inventory. They stand in the order of the tree: an item is below the last one before it whose
// level is lower by 1.
struct ZoTRecordedItem {
    std::uint32_t level;  // 0: the root item
    std::string id;       // kind and index, such as "UPDATE_ELEMENT[2]"
    std::uint32_t parameterCount;
};

struct ZoTRecordedParameter {
    std::string address;   // in its item, such as "PRODUCT/BOARD_TYPE"
    bool isText;           // a text, otherwise a number; a version is a text
    std::string text;      // empty for a number
    std::uint32_t number;  // 0 for a text
};

// What a record leaves out, since it cannot be read.
struct ZoTOmission {
    std::string item;       // its address, such as "/ROOT/HCN"
    std::string parameter;  // its address in the item; empty: the item is left out, with what is below it
    std::string reason;     // for a person to read
};

}  // namespace ZoNTrellanInspector

// Looks into an updater. The virtual operations are called through their slots: new ones are appended. They may throw
// std::bad_alloc when memory is short, and std::out_of_range for a position that there is not.
class ZO_TRELLAN_EXPORT ZoITrellanInspector {
public:
    // Makes an inspector of `updater`, which must outlive it; owned by the caller and released with delete. Throws
    // std::invalid_argument when `updater` is none of this library's.
    static ZoITrellanInspector* createInstance(ZoITrellanUpdater& updater);

    virtual ~ZoITrellanInspector() {}

    // The elements, as many as getUpdateElementList gives and in its order.
    virtual unsigned getElementCount() = 0;
    virtual const ZoNTrellanInspector::ZoTElement& getElement(unsigned index) = 0;
    virtual const ZoNTrellanInspector::ZoTKeys& getElementKeys(unsigned index) = 0;

    // The errors of the element's update, up to now.
    virtual unsigned getElementErrorCount(unsigned index) = 0;
    virtual const ZoNTrellanInspector::ZoTError& getElementError(unsigned index, unsigned position) = 0;

    // True when the archive supports the target, whatever the command; false before apply() has told.
    virtual bool isTargetSupported() = 0;

    // The phases that an update has, as the phase callback counts them: 0 to this number minus 1. One of which all
    // elements are left out counts too.
    virtual unsigned getPhaseCount() = 0;

    // The update files, as many as getUpdateFileList gives and in its order.
    virtual unsigned getFileCount() = 0;
    virtual const ZoNTrellanInspector::ZoTFile& getFile(unsigned position) = 0;

    // Tells what the update file at `path` says of itself, whether it is in an archive or not.
    virtual const ZoNTrellanInspector::ZoTFileHeader& readFileHeader(const std::string& path) = 0;

    // Checks the update files that run() would use, and their entries: those of elements in state UPDATE. Each file is
    // read once at most. `progress`, unless null, is called after each piece; what it throws passes through. The
    // findings of an earlier check are forgotten.
    virtual void checkUsedFiles(ZoNTrellanInspector::ZoTReadProgress progress, void* context) = 0;

    // What the last check has found, in the order of the description.
    virtual unsigned getFindingCount() = 0;
    virtual const ZoNTrellanInspector::ZoTFinding& getFinding(unsigned position) = 0;

    // Compares each element in state UPDATED with its file, by what `rescanned` has found: an inspector of another
    // updater, which has read the target after run() with the same filters or none. Throws std::invalid_argument when
    // `rescanned` is none of this library's.
    virtual void verify(ZoITrellanInspector& rescanned) = 0;

    // What the last verify() has found of the element; its elements are those of that time.
    virtual const ZoNTrellanInspector::ZoTVerification& getVerification(unsigned index) = 0;

    // Looks at what the entry of the update file at `position` expects of an element. Returns the number of its board
    // objects; 1 for an entry without "boards".
    virtual unsigned readFileKeys(unsigned position) = 0;

    // What that entry expects by one of its board objects; `number` counts them in the order of "boards", from 0.
    virtual const ZoNTrellanInspector::ZoTFileKeys& getFileKeys(unsigned number) = 0;

    // Checks the whole archive that the options name, whatever the target and whatever was read before: every entry of
    // the description and every file of the folder. Reads the description anew; without it there are no findings.
    // Otherwise as checkUsedFiles.
    virtual ZoNTrellanInspector::ZoTDescription checkArchive(ZoNTrellanInspector::ZoTReadProgress progress,
                                                             void* context) = 0;

    // The names of the members that the format has for an object of a description.
    virtual unsigned getMemberCount(ZoNTrellanInspector::ZoTDescriptionObject object) = 0;
    virtual const std::string& getMember(ZoNTrellanInspector::ZoTDescriptionObject object, unsigned position) = 0;

    // As readFileHeader(); `progress`, unless null, is called after each piece of a file that has to be read whole:
    // one without a header. What it throws passes through.
    virtual const ZoNTrellanInspector::ZoTFileHeader& readFileHeaderWithProgress(
        const std::string& path, ZoNTrellanInspector::ZoTReadProgress progress, void* context) = 0;

    // Holds the element against the archive's entries: against all for its board type or, where there is none, against
    // the three that it is nearest to. Returns the number of candidates, which are ordered by the number of criteria
    // that are not met, and then as the archive is.
    virtual unsigned explainElement(unsigned index) = 0;

    // Holds the entry of the update file at `position` against all elements of the board types that it is for. Returns
    // their number; the candidates are in the order of the elements.
    virtual unsigned explainFile(unsigned position) = 0;

    // The candidates of the last explanation, from 0, and the criteria that are not met, all of them. Where the entry
    // is not for the element's kind, neither "id" nor "targetPath" is named.
    virtual const ZoNTrellanInspector::ZoTCandidate& getCandidate(unsigned number) = 0;
    virtual unsigned getUnmetCount(unsigned number) = 0;
    virtual const ZoNTrellanInspector::ZoTUnmet& getUnmet(unsigned number, unsigned position) = 0;

    // Scans the target for a record of its inventory: all that the library could see of it, whatever the options select
    // and whatever was read before. Returns false when the scan failed; there is no record then. An earlier record is
    // forgotten.
    virtual bool recordInventory() = 0;

    // The errors that the scan for the record has reported; a scan that has not failed may have reported some, too.
    virtual unsigned getScanErrorCount() = 0;
    virtual const ZoNTrellanInspector::ZoTError& getScanError(unsigned position) = 0;

    // The record, and what it leaves out. A parameter is found by the positions of its item and in its item.
    virtual unsigned getRecordedItemCount() = 0;
    virtual const ZoNTrellanInspector::ZoTRecordedItem& getRecordedItem(unsigned position) = 0;
    virtual const ZoNTrellanInspector::ZoTRecordedParameter& getRecordedParameter(unsigned item, unsigned position) = 0;
    virtual unsigned getOmissionCount() = 0;
    virtual const ZoNTrellanInspector::ZoTOmission& getOmission(unsigned position) = 0;

    // Reads the target anew, another one perhaps by now, and gives its elements files of the archive as apply() has
    // read it, whatever the command; the one operation here that changes the updater. Elements, states, phases and the
    // updater's lists are then as after apply(), and nothing is excluded. May be repeated. Returns what apply() does:
    // 0, of an update 2, and 1 when the target cannot be read: its elements are those of before then, without files.
    // Also 1, and nothing is changed, without an archive that was read, and while apply() or run() is at work. Errors
    // are kept here and do not go to the master error list.
    virtual unsigned readTarget() = 0;

    // The errors that the last readTarget() has met with.
    virtual unsigned getTargetErrorCount() = 0;
    virtual const ZoNTrellanInspector::ZoTError& getTargetError(unsigned position) = 0;

    // The errors of the master error list that are of no element's update, such as that the target could not be locked
    // or its state not be saved: what stood there when the last run() of an update had unlocked the target; before one,
    // and while it is at work, what stands there. run() returns 0 for these too, those of earlier updaters included.
    // They are those of the run as long as nobody takes errors off that list.
    virtual unsigned getGeneralErrorCount() = 0;
    virtual const ZoNTrellanInspector::ZoTError& getGeneralError(unsigned position) = 0;
};

#endif
