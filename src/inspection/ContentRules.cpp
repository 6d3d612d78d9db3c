// The rules about the update files themselves.
#include <algorithm>

#include "archive/Properties.h"
#include "inspection/Check.h"
#include "inspection/FileContent.h"
#include "inspection/Rules.h"

using namespace ZoNUpdateArchive;
using ZoNJson::json;

namespace ZoNUpdateInspection {
namespace {

using Severity = Check::Severity;

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

// What the entry says is compared: its checksum or, in an archive that is checked as a whole, all of it.
bool isCompared(const ZoSUpdateFile& file, Depth depth)
{
    return depth != Depth::used || (file.hasTargetPath ? file.checksumCrc32 != notAvailable : file.statesChecksum);
}

std::string number(std::uint32_t value)
{
    return std::to_string(value);
}

// The checksum that the target will be told: the stated one or else the one in the header.
std::uint32_t checksumOf(const ZoSUpdateFile& file, const FileHeader& header)
{
    return file.checksumCrc32 != notAvailable ? file.checksumCrc32 : header.checksumCrc32;
}

// On the flash drive the target computes the checksum from the bytes; any other file's is the one in its header.
bool isComparedWithBytes(const ZoSUpdateFile& file, const FileHeader& header)
{
    return file.hasTargetPath ? checksumOf(file, header) != notAvailable
                              : file.statesChecksum && header.kind == FileKind::plain;
}

void compareWithBytes(Check& check, const ZoSUpdateFile& file, std::uint32_t checksum, std::uint32_t crc32)
{
    if (checksum == crc32) {
        return;
    }
    if (file.statesChecksum) {
        check.report("checksum", Severity::ERROR, {file, "checksumCrc32"},
                     "the stated checksum is " + number(checksum) + ", but the CRC-32 of the file is " + number(crc32) +
                         ": put the right file in its place, or state that");
    } else {
        check.report("checksum", Severity::WARNING, {file, "name"},
                     "the checksum in the file's header is " + number(checksum) +
                         ", but the target computes the CRC-32 of a file on the flash drive, " + number(crc32) +
                         ", and will never agree: state \"checksumCrc32\": " + number(crc32));
    }
}

void compareWithHeader(Check& check, const ZoSUpdateFile& file, const FileHeader& header)
{
    if (file.statesChecksum && header.checksumCrc32 != notAvailable && file.checksumCrc32 != header.checksumCrc32) {
        check.report("checksum", Severity::ERROR, {file, "checksumCrc32"},
                     "the stated checksum is " + number(file.checksumCrc32) + ", but the one in the file's header is " +
                         number(header.checksumCrc32) + ": put the right file in its place, or state that");
    }
}

// The archive cannot be read with an entry whose checksum nobody tells.
void checkWhetherToldAtAll(Check& check, const ZoSUpdateFile& file, const FileHeader& header)
{
    const json& entry = file.jsonEntry;
    const bool isWrong = entry.contains("checksumCrc32") && !entry["checksumCrc32"].is_number_unsigned();
    if (file.checksumCrc32 == notAvailable && !isWrong && !mayTellChecksum(header)) {
        check.report("structure", Severity::ERROR, {file, ""}, withoutHeading(untoldChecksumMessage(file)));
    }
}

}  // namespace

bool ContentCheck::look(const ZoSUpdateFile& file)
{
    const std::string path = check.getArchive().pathOf(file);
    const FileLook look = lookAt(path);
    if (look.problem != FileProblem::none) {
        reportProblem(check, file, look.problem);
        return false;
    }
    if (!isCompared(file, depth)) {
        return false;
    }
    const auto shared = sharedFiles.try_emplace(look.identity, SharedFile{path, look.size, {}}).first;
    shared->second.users.push_back(&file);
    return true;
}

void ContentCheck::compare(const ZoSUpdateFile& file, const FileContent& content)
{
    if (isComparedWithBytes(file, content.header)) {
        compareWithBytes(check, file, checksumOf(file, content.header), *content.crc32);
    } else if (!file.hasTargetPath) {
        compareWithHeader(check, file, content.header);
    }
    if (depth != Depth::used) {
        checkWhetherToldAtAll(check, file, content.header);
    }
    if (depth == Depth::everything) {
        checkHeader(check, file, content.header);
    }
}

Wanted ContentCheck::wantedOf(const SharedFile& shared) const
{
    const auto isOfBoard = [](const ZoSUpdateFile* file) { return !file->hasTargetPath; };
    const bool header = depth != Depth::used || std::any_of(shared.users.begin(), shared.users.end(), isOfBoard);
    return {header, [&shared](const FileHeader& found) {
                return std::any_of(shared.users.begin(), shared.users.end(),
                                   [&](const ZoSUpdateFile* file) { return isComparedWithBytes(*file, found); });
            }};
}

void ContentCheck::read(const ReadProgress& progress)
{
    std::uint64_t all = 0;
    for (const auto& [identity, shared] : sharedFiles) {
        all += shared.size;
    }
    std::uint64_t finished = 0;
    for (const auto& entry : sharedFiles) {
        const auto& shared = entry.second;
        std::uint64_t read = 0;
        const auto content = readContent(shared.path, wantedOf(shared), [&, size = shared.size](std::uint64_t bytes) {
            read = std::min(read + bytes, size);  // the file may grow meanwhile
            progress(finished + read, all);
        });
        finished += shared.size;
        progress(finished, all);
        for (const ZoSUpdateFile* const file : shared.users) {
            if (content) {
                compare(*file, *content);
            } else {
                reportProblem(check, *file, FileProblem::unreadable);
            }
        }
    }
}

void checkContents(Check& check, Depth depth, const ReadProgress& progress)
{
    ContentCheck contents(check, depth);
    for (const ZoSUpdateFile* const file : check.getFiles()) {
        contents.look(*file);
    }
    contents.read(progress);
}

}  // namespace ZoNUpdateInspection
