// The rules of the check of an archive, by what they look at. Each adds what it finds to the check.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "archive/FileHeader.h"
#include "base/FileIdentity.h"

namespace ZoNUpdateInspection {

class Check;
struct FileContent;
struct Wanted;

// Is given how many bytes of how many have been read.
using ReadProgress = std::function<void(std::uint64_t read, std::uint64_t all)>;

// How much of the files is looked at: what an update depends on; all that concerns their content; or that and all that
// their headers say.
enum class Depth { used, content, everything };

// The update files in the archive's folder: missing-file, not-a-file, empty-file, checksum; with more than Depth::used
// also structure, for an entry without a checksum that its file does not tell either; with Depth::everything what
// checkHeader() finds too, for which the entries have to be accepted ones. A file is read once, whatever number of
// entries names it, and only as far as is needed.
void checkContents(Check& check, Depth depth, const ReadProgress& progress);

// The same for entries that come one by one.
class ContentCheck {
public:
    // `check` must outlive this.
    ContentCheck(Check& check, Depth depth) : check(check), depth(depth) {}

    // Looks at the file of the entry. True when it is to be read: then the entry must outlive this.
    bool look(const ZoNUpdateArchive::ZoSUpdateFile& file);

    // Reads the files.
    void read(const ReadProgress& progress);

private:
    // One file of the folder, by whatever name entries reach it.
    struct SharedFile {
        std::string path;
        std::uint64_t size;
        std::vector<const ZoNUpdateArchive::ZoSUpdateFile*> users;  // entries that are compared with its content
    };

    Wanted wantedOf(const SharedFile& shared) const;
    void compare(const ZoNUpdateArchive::ZoSUpdateFile& file, const FileContent& content);

    Check& check;
    const Depth depth;
    std::map<ZoNUpdateBase::FileIdentity, SharedFile> sharedFiles;
};

// An entry against the header of its file: file-version, compatibility.
void checkHeader(Check& check, const ZoNUpdateArchive::ZoSUpdateFile& file, const ZoNUpdateArchive::FileHeader& header);

// The names of the update files: outside-archive, shell-character, control-character.
void checkNames(Check& check);

// The description itself, which decides everything: outside-archive, where a link leads out of the folder to it.
void checkDescription(Check& check);

// The paths that files get on the flash drive: path-escape, shell-character, control-character.
void checkTargetPaths(Check& check);

// The same paths against one another: path-collision, at the later one.
void checkPathCollisions(Check& check);

// The numbers of the entries, which may be refused ones: number-range.
void checkNumbers(Check& check);

// Which elements entries are given at all: unreachable, overlap; which board objects decide: unreachable-board.
void checkReach(Check& check);

// Files that are known to belong to the archive, by whatever name.
class KnownFiles {
public:
    void add(const std::string& path);

    // Whether the file at `path` is one of them; also where it cannot be looked at, so that nobody can tell.
    bool contains(const std::string& path) const;

private:
    std::set<ZoNUpdateBase::FileIdentity> identities;
    std::set<std::string> paths;  // of those that cannot be looked at
};

// The archive's folder against the files that are known: unlisted-file.
void checkFolder(Check& check, const KnownFiles& known);

}  // namespace ZoNUpdateInspection
