// Check: the entries of an archive that are looked at, and what is found wrong with them.
//
// The rules are functions over it, each of which adds its findings.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZoITrellanInspector.h"
#include "archive/ZoCUpdateArchive.h"
#include "base/FindingList.h"

namespace ZoNUpdateInspection {

// What a finding is about: an entry or, with `board`, an element of its "boards", and one of its members.
struct Place {
    const ZoNUpdateArchive::ZoSUpdateFile& file;
    std::string member;       // or an element of it ("boardId/2"); empty: the object itself
    std::int32_t board = -1;  // -1: the entry itself
};

// JSON Pointer to an entry of the description or, with `board`, to an element of its "boards".
std::string pointerTo(std::uint32_t entry, std::int32_t board = -1);

// The name of the entry's update file as findings tell it.
std::string nameInFindings(const ZoNUpdateArchive::ZoSUpdateFile& file);

// A message of the library in one line, without "ERROR: ".
std::string withoutHeading(std::string_view message);

class Check {
public:
    using Files = std::vector<const ZoNUpdateArchive::ZoSUpdateFile*>;
    using Severity = ZoNTrellanInspector::ZoTSeverity;

    // `files` are of `archive`, which must outlive the check, in the order of the description.
    Check(const ZoCUpdateArchive& archive, Files files);

    const Files& getFiles() const { return files; }

    // From now on these are looked at.
    void setFiles(Files others) { files = std::move(others); }

    const ZoCUpdateArchive& getArchive() const { return archive; }

    // Adds a finding, which holds until the next one. `message` is one sentence without a full stop: what is wrong, and
    // what to do about it.
    ZoNTrellanInspector::ZoTFinding& report(const char* rule, Severity severity, const Place& place,
                                            std::string message);

    // Adds a finding about no entry and nothing in the description. The one that is returned can be completed.
    ZoNTrellanInspector::ZoTFinding& report(const char* rule, Severity severity, std::string message);

    // A check of further entries, or of other rules, which adds what it finds when it is given to add().
    Check further(Files others) const;

    // Adds what a further check has found.
    void add(Check other);

    // Gives the findings away, in the order of the description, those about one object in the order of reporting, and
    // those that are about nothing in the description at the end.
    ZoNUpdateBase::FindingList takeFindings();

private:
    void keepPresent();

    const ZoCUpdateArchive& archive;
    Files files;
    std::shared_ptr<ZoNUpdateBase::FindingForms> forms;
    // Each in the order of the description, one behind the other in that of reporting.
    std::vector<ZoNUpdateBase::FindingList> runs;
    std::optional<ZoNTrellanInspector::ZoTFinding> present;  // the last one, which may still be completed
};

}  // namespace ZoNUpdateInspection
