// What is wrong with an archive, as text and as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "tool/documents/JsonPlaces.h"

namespace TrellanTool {

struct Finding {
    std::string rule;
    ZoNTrellanInspector::ZoTSeverity severity;
    std::optional<std::int32_t> file;   // position of the entry in "files" of the description
    std::optional<std::int32_t> board;  // position of the board object in "boards" of the entry
    std::string name;                   // of the entry's update file
    std::string pointer;                // JSON Pointer to what is meant; empty: to nothing in the description
    std::optional<TextPlace> place;     // where that begins; of a member that is not there, its object
    std::string message;
};

// What the last check of `inspector` has found, with its places in `description`, the text of the description.
std::vector<Finding> findingsOf(ZoITrellanInspector& inspector, const std::string& description);

// How many of them are of this severity.
std::size_t countFindings(const std::vector<Finding>& findings, ZoNTrellanInspector::ZoTSeverity severity);

// The finding in one line, without its end: archive.json:9:5: error: files[3] "hcn-cpld.bin": message [rule]. The
// description's file has the name `descriptionName`.
std::string findingText(const Finding& finding, const std::string& descriptionName);

// The finding with the members "rule", "severity", "file", "board", "pointer", "line", "column" and "message".
nlohmann::ordered_json findingRecord(const Finding& finding);

}  // namespace TrellanTool
