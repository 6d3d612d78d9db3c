// Where the parts of a JSON text stand in it: for messages that lead to the place that is meant.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tool/documents/TextPlace.h"

namespace TrellanTool {

// What reading a JSON text found out about its places.
struct JsonPlaces {
    // Where the text is no JSON, and why, in words without a line end.
    struct Fault {
        TextPlace place;
        std::string reason;
    };

    // A member whose key stands in its object already.
    struct DuplicateKey {
        std::string pointer;  // JSON Pointer to the member
        TextPlace place;      // of the later key
    };

    std::optional<Fault> fault;
    std::vector<DuplicateKey> duplicateKeys;  // in the order of the text, as far as it is JSON

    // For each pointer that was asked for where it begins: a member with its key, anything else with its value. Of
    // members with the same key the last counts. Nothing where the text, as far as it is JSON, has no such part.
    std::vector<std::optional<TextPlace>> places;
};

// JSON Pointer to the member `key` of the object to which `pointer` leads.
std::string pointerToMember(std::string pointer, std::string_view key);

// Reads `text` once (walkJson) and finds the parts that `pointers` (JSON Pointers) name.
JsonPlaces findJsonPlaces(std::string_view text, const std::vector<std::string>& pointers);

}  // namespace TrellanTool
