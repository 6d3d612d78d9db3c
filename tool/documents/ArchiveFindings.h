// ArchiveFindings: all that is wrong with an archive, or worth a word, whatever the target.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/documents/Findings.h"
#include "tool/documents/UnknownMembers.h"

namespace TrellanTool {

class ArchiveFindings {
public:
    // What the check of the whole archive (checkArchive), which ended with `read`, has found by `inspector` and in
    // `description`, the text of the description, both of which must outlive this: also where it is no JSON, what
    // stands in it twice, and what the format does not have.
    ArchiveFindings(ZoITrellanInspector& inspector, ZoNTrellanInspector::ZoTDescription read,
                    const std::string& description);

    std::size_t size() const { return order.size(); }

    // The finding at `position` in the order of the description, made when it is asked for. One after the other is
    // fastest.
    Finding at(std::size_t position);

    std::size_t count(ZoNTrellanInspector::ZoTSeverity severity) const;

private:
    using Severity = ZoNTrellanInspector::ZoTSeverity;
    using Object = ZoNTrellanInspector::ZoTDescriptionObject;
    struct Passed;

    void readKnown();
    bool isKnown(Object object, std::string_view key) const;
    Passed lookThrough();
    void addUnknown(const Passed& passed);
    void addDuplicates();
    void addOthers();
    void add(std::size_t number, Severity severity, std::size_t offset);
    Finding memberFinding(std::size_t number) const;
    void noteEntry(Finding& finding, std::string_view object) const;

    ZoITrellanInspector& inspector;
    const std::string& description;
    const bool isRead;
    const std::size_t foundByLibrary;
    std::array<std::vector<std::string>, 4> known;  // members, by the kind of object
    FoundMembers unknown;                           // numbered behind what the library has found
    FoundMembers duplicates;                        // and these behind them
    std::optional<JsonFault> fault;
    std::optional<std::size_t> syntax;            // number of the finding that tells of the fault
    std::optional<std::vector<EntryName>> names;  // of the entries, where members were found
    FindingOrder order;
    std::array<std::size_t, 3> counts = {};
    TextPlaces places;
};

}  // namespace TrellanTool
