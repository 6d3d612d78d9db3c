// Builders for the documents of simulated targets.
//
//   target({board("HCN", {{"PRODUCT/BOARD_TYPE", "KR5120"}}, {updateElement(1, {{"NAME", "UserFirmware"}})})})
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// An item with parameters (an object keyed by parameter address) and sub-items.
nlohmann::ordered_json item(std::string id, nlohmann::ordered_json parameters,
                            std::vector<nlohmann::ordered_json> items = {});

// "UPDATE_ELEMENT[index]" with CONFIGURATION 0, VALID 1, ACTIVE 1 and ID `index`, where `parameters` states nothing
// else.
nlohmann::ordered_json updateElement(unsigned index, nlohmann::ordered_json parameters);

// "FILESYSTEM_ELEMENT[index]", otherwise as updateElement.
nlohmann::ordered_json fileElement(unsigned index, nlohmann::ordered_json parameters);

// A board: an item whose first sub-item is an UPDATE_INFO with `elements`, followed by `items`.
nlohmann::ordered_json board(std::string id, nlohmann::ordered_json parameters,
                             std::vector<nlohmann::ordered_json> elements,
                             std::vector<nlohmann::ordered_json> items = {});

// A target with a virtual clock and `items` below its root.
nlohmann::ordered_json target(std::vector<nlohmann::ordered_json> items);
