// The update that the fuzzed plans are of: one element of a small device.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

// The text of the device's target file, and the folder of the archive.
extern const char* const plannedDevice;
std::string plannedArchive();

// What `plan` says of all that a plan fixes, as far as the true plan says something of it. Throws nlohmann's exceptions
// where it is no plan.
nlohmann::ordered_json whatIsFixed(const nlohmann::ordered_json& plan, const nlohmann::ordered_json& truth);

// The plan's text with the digest that belongs to it.
std::string withDigest(const nlohmann::ordered_json& plan);
