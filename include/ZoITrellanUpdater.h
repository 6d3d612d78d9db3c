// Firmware update library for host tools: the only header a host needs.
//
//   ZoNTrellanUpdater::ZoTOptions options;
//   options.archivePath = "/path/of/the/archive";
//   options.descriptionFileName = "archive.json";
//   options.command = ZoNTrellanUpdater::UPDATE;
//   std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(options));
//   const bool updated = updater->apply() == 0 && updater->run() == 1;
//
// The library starts no threads. A host that has several calls one operation at a time, whichever updater it is of: the
// platform, which all updaters share, is not thread safe. From which thread each call comes makes no difference to the
// library, only to a platform that is bound to a thread.
//
// Everything the library has to say goes to standard output or to the message callback; the platform's error manager
// also gets a log entry for each update and one warning. Compiles as C++11.
//
// The records below are frozen: hosts that were built earlier hold them by value and in arrays, in this layout. What is
// new comes as an operation at the end of the updater, or as another interface, which hands its records out by
// reference.
#ifndef ZOITRELLANUPDATER_H
#define ZOITRELLANUPDATER_H

#include <cstdint>
#include <string>

// Strings cross the boundary in the layout that libstdc++ has had since GCC 5. A host with another one would link with
// the library and then crash, since no name that is linked says which strings are meant.
#if defined(_LIBCPP_VERSION)
#error "libZoTrellanUpdateLib uses libstdc++, and the strings of libc++ have another layout: use libstdc++ here"
#elif defined(__GLIBCXX__) && (!defined(_GLIBCXX_USE_CXX11_ABI) || !_GLIBCXX_USE_CXX11_ABI)
#error "libZoTrellanUpdateLib uses the C++11 strings of libstdc++: compile this host with _GLIBCXX_USE_CXX11_ABI=1"
#endif

#if defined(__GNUC__)
#define ZO_TRELLAN_EXPORT __attribute__((visibility("default")))
#else
#define ZO_TRELLAN_EXPORT
#endif

namespace ZoNTrellanUpdater {

// What apply() and run() do (ZoTOptions::command). With any other value apply() prints the banner only and run()
// reports errors only.
enum ZoTCommand : std::uint32_t {
    TOOL_VERSION = 0,        // print the version of this library
    ARCHIVE_VERSION = 1,     // print the version of the archive
    PRINT_ARCHIVE = 2,       // print the archive's update files as a table
    OUTPUT_DESCRIPTION = 3,  // print the archive description as JSON, missing checksums filled in
    INSTALLED_VERSIONS = 4,  // print the versions installed on the target
    READ_INVENTORY = 5,      // read the target's inventory, for the lists below and for checkRebootSupport
    COMPARE_VERSIONS = 6,    // print installed and available versions side by side
    UPDATE = 7               // update the target
};

// What the updater is to do, and how.
struct ZoTOptions {
    // Folder of the firmware archive; absolute for an update. A file for the flash drive is refused when this path, its
    // name or its target path has a blank or a character that is special to a shell.
    std::string archivePath;
    std::string descriptionFileName;  // name of the archive description file in that folder
    std::string option3;              // carried only
    // Filters: names separated by commas and/or blanks, matched whole and case-sensitively. An empty filter is off.
    std::string boardTypes;              // only elements of boards of these types
    std::string serialNumbers;           // only elements of boards with these serial numbers (decimal)
    std::string elementNames;            // only elements with these names
    bool force = false;                  // carry out standard updates even where they are not required
    bool noProgress = false;             // print no progress lines
    bool verbose = false;                // print more diagnostics
    bool configuration = false;          // work on configuration elements instead of the others
    bool disableCustomElements = false;  // leave custom elements out of the update
    bool option12 = false;               // carried only
    std::uint32_t command = TOOL_VERSION;
};

// One updatable element of the target, with the update file that it has been given; or a file of the archive that the
// target's flash drive does not have yet.
struct ZoTUpdateElement {
    std::uint32_t index = 0;  // position in the list: the number for disableUpdateElement
    std::string boardType;
    std::uint32_t serialNumber = 0;  // of the board
    std::string boardName;
    std::string unitDescription;       // product, rack and name of the unit that the board sits in
    std::uint32_t slot = 0;            // of the board in its unit
    std::uint32_t slotCount = 0;       // number of slots that the board takes; 0: it has no slot
    std::string displayName;           // label in every list and message
    std::string displayType;           // short kind, such as "FPGA"
    bool isFileSystemElement = false;  // a file on the flash drive
    bool valid = false;                // the installed content is sound
    bool active = false;               // the installed content is in use
    std::string installedVersion;      // empty when not known
    bool custom = false;               // the customer's own element
    std::uint32_t phase = 0;           // phase of the update, from 0
    bool hasUpdateFile = false;        // the archive has a file for it
    std::int32_t updateFileIndex = 0;  // position of the file in the file list; -1 without a file
    std::string availableVersion;      // version of the file; empty when not known or without a file
    bool checksumDiffers = false;      // the file's checksum is not that of the installed content
    bool disabled = false;             // left out of the update
};

// One update file of the archive.
struct ZoTUpdateFile {
    std::string name;
    std::string version;  // "0.0" when not known
};

}  // namespace ZoNTrellanUpdater

// The updater. Order of use: createInstance, the callbacks if wanted, apply(), the lists if wanted, run(), delete.
//
// The virtual operations are called through their slots: their order is part of the binary interface. They may throw
// std::bad_alloc when memory is short.
class ZO_TRELLAN_EXPORT ZoITrellanUpdater {
public:
    // Makes an updater for `options`, owned by the caller and released with delete. Reads nothing yet. Throws
    // std::bad_alloc when memory is short.
    static ZoITrellanUpdater* createInstance(ZoNTrellanUpdater::ZoTOptions options);

    virtual ~ZoITrellanUpdater() {}

    // The callbacks. Null (the default) switches one off; they may be changed at any time. They are called within the
    // host's own calls, on its thread: the message callback by apply(), run(), checkRebootSupport() and reboot(), the
    // others by run().
    //
    // A callback may read the lists, which show what is known by then. Called from a callback of this updater's apply()
    // or run(), apply() and run() do nothing and fail at once: they return 1 and 0. An update that is running does not
    // notice that an element is disabled. The updater must not be deleted in a callback. What a callback throws passes
    // through to the host; run() unlocks the target before, and prints the errors that were reported until then.

    // A phase of the update begins (from 0); 0xFFFFFFFF: the last one has ended.
    virtual void setPhaseCallBack(void (*callBack)(unsigned)) = 0;
    // The update of the element with this index failed or was cancelled.
    virtual void setFailureCallBack(void (*callBack)(unsigned)) = 0;
    // Progress of the phase in percent.
    virtual void setProgressCallBack(void (*callBack)(unsigned)) = 0;
    // Takes all text in place of standard output, in fragments: a fragment may be a part of a line, and ends with "\n",
    // "\r" or neither.
    virtual void setMessageCallBack(void (*callBack)(const std::string&)) = 0;

    // Reads what the command needs: the archive, the target's inventory, and which file fits which element. Returns 0
    // on success; 1 when the archive or the inventory cannot be read; 2 when the archive does not support the target
    // (no element will be updated then). To be called once; after 1 or an exception the updater is only good for
    // deleting it.
    virtual unsigned apply() = 0;

    // Carries out the command; to be called after apply() returned 0. Returns 1 on success, 0 when it failed or errors
    // were reported: those that the platform has collected in this process, from apply() and earlier updaters too.
    //
    // An update runs a program to copy a file to the flash drive and asks how it ended. So SIGCHLD must not be ignored
    // meanwhile, also not as inherited from the process that started the host: each copy would count as failed.
    virtual int run() = 0;

    // What the archive says of itself. Before an archive was read both versions are "0.0", the other texts empty.
    virtual void getArchiveInfo(std::string& archiveName, std::string& archiveVersion, std::string& productName,
                                std::string& formatVersion, std::string& archiveVariant) = 0;

    // Always 0.
    virtual unsigned getArchiveId() = 0;

    // The target's elements as apply() found them, then the archive's files that the flash drive does not have yet.
    // `list` becomes a new array of `count` records, owned by the caller and released with delete[]; null when there is
    // none.
    virtual void getUpdateElementList(ZoNTrellanUpdater::ZoTUpdateElement*& list, unsigned& count) = 0;

    // Leaves the element with this index out of the update that run() will make. Does nothing when there is no such
    // element.
    virtual void disableUpdateElement(unsigned index) = 0;

    // The archive's update files as apply() read them. `list` as above.
    virtual void getUpdateFileList(ZoNTrellanUpdater::ZoTUpdateFile*& list, unsigned& count) = 0;

    // Tells whether the device can be rebooted automatically, and prints why not. `state` becomes 0 when it can; 1 when
    // the inventory was not read or has no active firmware; 2 when the installed firmware, 3 when the device does not
    // support it; 4 when checking failed. Returns true for state 0.
    virtual bool checkRebootSupport(unsigned& state) = 0;

    // Refused for local access: prints why and returns false.
    virtual bool reboot() = 0;
};

#endif
