// Check: the entries of an archive that are looked at, and what is found wrong with them.
//
// The rules are functions over it, each of which adds its findings.
#pragma once

#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "archive/ZoSUpdateFile.h"

namespace ZoNUpdateInspection {

// What a finding is about: an entry or, with `board`, an element of its "boards", and one of its members.
struct Place {
    const ZoNUpdateArchive::ZoSUpdateFile& file;
    const char* member;
    std::int32_t board = -1;  // -1: the entry itself
};

class Check {
public:
    using Files = std::vector<const ZoNUpdateArchive::ZoSUpdateFile*>;
    using Severity = ZoNTrellanInspector::ZoTSeverity;
    using Findings = std::vector<ZoNTrellanInspector::ZoTFinding>;

    // `files` are in the order of the description and must outlive the check.
    Check(std::string archivePath, Files files) : archivePath(std::move(archivePath)), files(std::move(files)) {}

    const Files& getFiles() const { return files; }

    // The archive's folder, and the path of an update file in it.
    const std::string& getArchivePath() const { return archivePath; }
    std::string pathOf(const ZoNUpdateArchive::ZoSUpdateFile& file) const;

    // Adds a finding. `message` is one sentence without a full stop: what is wrong, and what to do about it.
    void report(const char* rule, Severity severity, const Place& place, std::string message);

    // Gives the findings away, in the order of the description, those about one object in the order of reporting.
    Findings takeFindings();

private:
    std::string archivePath;
    Files files;
    Findings findings;
};

}  // namespace ZoNUpdateInspection
