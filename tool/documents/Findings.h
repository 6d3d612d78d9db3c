// What is wrong with an archive, as text and as JSON.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"
#include "tool/documents/FindingOrder.h"
#include "tool/documents/JsonPlaces.h"
#include "tool/documents/TextPlace.h"

namespace TrellanTool {

struct Finding {
    std::string rule;
    ZoNTrellanInspector::ZoTSeverity severity;
    std::optional<std::int32_t> file;    // position of the entry in "files" of the description
    std::optional<std::int32_t> board;   // position of the board object in "boards" of the entry
    std::string name;                    // of the entry's update file, shortened where it is long
    std::optional<std::string> pointer;  // JSON Pointer to what is meant; none: to nothing in the description
    std::optional<TextPlace> place;      // where that begins; of a member that is not there, its object
    std::string message;
    std::optional<std::vector<std::uint32_t>> coveredBy;  // entries that take what this one fits, where it is told
    std::shared_ptr<const ZoNTrellanInspector::ZoTKeys> example;  // an element that one of them takes; null: none told
};

// The finding at `position` of what the last check of `inspector` has found, without its place.
Finding findingAt(ZoITrellanInspector& inspector, std::size_t position);

// Adds to `order`, which is empty, what the last check of `inspector` has found in the description, with the places in
// `description`, its text: all but the last ones, which are about nothing in it. Returns what else was found out about
// that.
JsonPlaces findPlaces(ZoITrellanInspector& inspector, std::string_view description, FindingOrder& order);

// What the last check of `inspector` has found, with the places in `description`, and in their order.
std::vector<Finding> findingsOf(ZoITrellanInspector& inspector, const std::string& description);

// How many of them are of this severity.
std::size_t countFindings(const std::vector<Finding>& findings, ZoNTrellanInspector::ZoTSeverity severity);

// "1 error", "2 errors".
std::string counted(std::size_t count, const std::string& what);

// The finding in one line, without its end: archive.json:9:5: error: files[3] "hcn-cpld.bin": message [rule]. The
// description's file has the name `descriptionName`.
std::string findingText(const Finding& finding, const std::string& descriptionName);

// The finding with the members "rule", "severity", "file", "board", "pointer", "line", "column" and "message", where it
// tells them "coveredBy" and "example".
TrellanJson::ordered_json findingRecord(const Finding& finding);

}  // namespace TrellanTool
