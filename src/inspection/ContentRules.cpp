// The rules about the update files themselves.
#include <algorithm>
#include <map>

#include "inspection/Check.h"
#include "inspection/FileContent.h"
#include "inspection/Rules.h"

using namespace ZoNUpdateArchive;

namespace ZoNUpdateInspection {
namespace {

using Severity = Check::Severity;

// One file of the folder, by whatever name entries reach it.
struct SharedFile {
    std::string path;
    std::uint64_t size;
    bool wantsHeader = false;
    bool wantsCrc32 = false;
    std::vector<const ZoSUpdateFile*> users;  // entries whose checksum is compared with it
};

using SharedFiles = std::map<FileIdentity, SharedFile>;

void reportProblem(Check& check, const ZoSUpdateFile& file, FileProblem problem)
{
    const Place place{file, "name"};
    switch (problem) {
        case FileProblem::missing:
            check.report("missing-file", Severity::ERROR, place,
                         "the archive's folder has no such file: add it, or correct the name");
            break;
        case FileProblem::unreadable:
            check.report("not-a-file", Severity::ERROR, place,
                         "this is no regular file that can be read: put the update file in its place");
            break;
        case FileProblem::empty:
            check.report("empty-file", Severity::ERROR, place,
                         "the file has no content: put the whole update file in its place");
            break;
        case FileProblem::none:
            break;
    }
}

// What a checksum of the entry is compared with: on the flash drive the target computes it from the bytes; any other
// file's is the one in its header.
void noteWanted(SharedFile& shared, const ZoSUpdateFile& file)
{
    if (file.hasTargetPath && file.checksumCrc32 != notAvailable) {
        shared.wantsCrc32 = true;
    } else if (!file.hasTargetPath && file.statesChecksum) {
        shared.wantsHeader = true;
    } else {
        return;
    }
    shared.users.push_back(&file);
}

SharedFiles lookAtFiles(Check& check)
{
    SharedFiles sharedFiles;
    for (const ZoSUpdateFile* const file : check.getFiles()) {
        const std::string path = check.getArchive().pathOf(*file);
        const FileLook look = lookAt(path);
        if (look.problem != FileProblem::none) {
            reportProblem(check, *file, look.problem);
            continue;
        }
        noteWanted(sharedFiles.try_emplace(look.identity, SharedFile{path, look.size, false, false, {}}).first->second,
                   *file);
    }
    std::erase_if(sharedFiles, [](const auto& shared) { return shared.second.users.empty(); });
    return sharedFiles;
}

std::string number(std::uint32_t value)
{
    return std::to_string(value);
}

void compareWithBytes(Check& check, const ZoSUpdateFile& file, std::uint32_t crc32)
{
    if (file.checksumCrc32 == crc32) {
        return;
    }
    if (file.statesChecksum) {
        check.report("checksum", Severity::ERROR, {file, "checksumCrc32"},
                     "the stated checksum is " + number(file.checksumCrc32) + ", but the CRC-32 of the file is " +
                         number(crc32) + ": put the right file in its place, or state that");
    } else {
        check.report("checksum", Severity::WARNING, {file, "name"},
                     "the checksum in the file's header is " + number(file.checksumCrc32) +
                         ", but the target computes the CRC-32 of a file on the flash drive, " + number(crc32) +
                         ", and will never agree: state \"checksumCrc32\": " + number(crc32));
    }
}

void compareWithHeader(Check& check, const ZoSUpdateFile& file, const FileHeader& header)
{
    if (header.checksumCrc32 != notAvailable && file.checksumCrc32 != header.checksumCrc32) {
        check.report("checksum", Severity::ERROR, {file, "checksumCrc32"},
                     "the stated checksum is " + number(file.checksumCrc32) + ", but the one in the file's header is " +
                         number(header.checksumCrc32) + ": put the right file in its place, or state that");
    }
}

void compare(Check& check, const ZoSUpdateFile& file, const FileContent& content)
{
    if (file.hasTargetPath || content.header.kind == FileKind::plain) {
        compareWithBytes(check, file, *content.crc32);
    } else {
        compareWithHeader(check, file, content.header);
    }
}

Wanted wantedOf(const SharedFile& shared)
{
    if (shared.wantsHeader && shared.wantsCrc32) {
        return Wanted::both;
    }
    return shared.wantsHeader ? Wanted::header : Wanted::crc32;
}

}  // namespace

void checkContents(Check& check, const ReadProgress& progress)
{
    const SharedFiles sharedFiles = lookAtFiles(check);
    std::uint64_t all = 0;
    for (const auto& [identity, shared] : sharedFiles) {
        all += shared.size;
    }
    std::uint64_t finished = 0;
    for (const auto& [identity, shared] : sharedFiles) {
        std::uint64_t read = 0;
        const auto content = readContent(shared.path, wantedOf(shared), [&](std::uint64_t bytes) {
            read = std::min(read + bytes, shared.size);  // the file may grow meanwhile
            progress(finished + read, all);
        });
        finished += shared.size;
        progress(finished, all);
        for (const ZoSUpdateFile* const file : shared.users) {
            if (content) {
                compare(check, *file, *content);
            } else {
                reportProblem(check, *file, FileProblem::unreadable);
            }
        }
    }
}

}  // namespace ZoNUpdateInspection
