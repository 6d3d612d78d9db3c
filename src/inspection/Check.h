// Check: the entries of an archive that are looked at, and what is found wrong with them.
//
// The rules are functions over it, each of which adds its findings.
#pragma once

#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "archive/ZoCUpdateArchive.h"

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

    // `files` are of `archive`, which must outlive the check, in the order of the description.
    Check(const ZoCUpdateArchive& archive, Files files) : archive(archive), files(std::move(files)) {}

    const Files& getFiles() const { return files; }

    const ZoCUpdateArchive& getArchive() const { return archive; }

    // Adds a finding. `message` is one sentence without a full stop: what is wrong, and what to do about it.
    void report(const char* rule, Severity severity, const Place& place, std::string message);

    // Gives the findings away, in the order of the description, those about one object in the order of reporting.
    Findings takeFindings();

private:
    const ZoCUpdateArchive& archive;
    Files files;
    Findings findings;
};

}  // namespace ZoNUpdateInspection
