// Where the parts of a JSON text stand in it: for messages that lead to the place that is meant.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tool/documents/FoundMembers.h"
#include "tool/documents/JsonWalk.h"

namespace TrellanTool {

// JSON Pointers whose places are asked for, and take them. Those into an entry of a description or one of its board
// objects say so: only while the text is read there they stand in memory.
class AskedPointers {
public:
    struct Asked {
        std::int32_t entry;  // -1: not into an entry
        std::int32_t board;  // -1: not into a board object
        std::string_view pointer;
    };

    virtual ~AskedPointers() = default;

    // In the order of the entries, those of each in that of its board objects.
    virtual std::size_t size() const = 0;

    // Good until the next call.
    virtual Asked at(std::size_t position) = 0;

    // Takes, once for each position, where the part begins: a member with its key, anything else with its value. Of a
    // part that is not there, its parent counts; nothing where the text, as far as it is JSON, has neither.
    virtual void takePlace(std::size_t position, std::optional<std::size_t> offset) = 0;
};

// What else reading a JSON text found out.
struct JsonPlaces {
    std::optional<JsonFault> fault;

    // Members whose keys stand in their objects already, as far as the text is JSON, in no order.
    FoundMembers duplicates;
};

// How long the JSON Pointer is to an entry of a description or, with `board`, to one of its board objects; -1: to none.
std::size_t pointerLength(std::int32_t entry, std::int32_t board);

// JSON Pointer to the member `key` of the object to which `pointer` leads.
std::string pointerToMember(std::string pointer, std::string_view key);

// Finds the parts that are asked for in `text`, by walkJson. Of members with the same key the last counts.
JsonPlaces findJsonPlaces(std::string_view text, AskedPointers& asked);

}  // namespace TrellanTool
