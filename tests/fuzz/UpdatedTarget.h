// What updates of all elements make of a target file.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

// Updates every element of the target file `path`. Throws std::runtime_error when it is no target, or cannot be
// written.
void updateAllElements(const std::string& path);

// Ends the process unless the documents differ in what those updates change, and in nothing else.
void requireUpdatesAlone(const nlohmann::json& before, const nlohmann::json& after);
