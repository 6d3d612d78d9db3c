// The script of a simulated target: what goes otherwise than normal, call by call.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "libZoInventoryTree/ZoCInventoryAddress.h"
#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/ErrorEntries.h"
#include "simulation/libZoInventoryTree/MemberIndex.h"
#include "simulation/libZoInventoryTree/ValueFaults.h"

namespace TrellanSimulation {

// What happens at one call: the errors that it adds. Each is read from its entry in the document, which stands at
// `place`; a DocumentFault says where it is wrong.
struct ScriptedCall {
    ScriptedCall(const Json& source, const Place& place);

    ErrorEntries errors;

protected:
    ScriptedCall(const Json& source, const Place& place, std::initializer_list<std::string_view> known);
};

struct ScriptedScan : ScriptedCall {
    ScriptedScan(const Json& source, const Place& place);

    int result = 0;  // what the scan returns
};

struct ScriptedPoll : ScriptedCall {
    ScriptedPoll(const Json& source, const Place& place);

    unsigned status = 1;
    unsigned done = 0;
    unsigned total = 0;
};

struct ScriptedFinish : ScriptedCall {
    ScriptedFinish(const Json& source, const Place& place);

    ErrorEntries results;  // what the update has reported
};

// Calls in their order. They stay in the document, and are good as long as it is.
template <class Call>
class ScriptedCalls {
public:
    // None.
    ScriptedCalls() = default;

    // Those of an array that was checked.
    explicit ScriptedCalls(const Json& list) : calls(list.values()) {}

    std::size_t size() const { return calls.count; }
    bool empty() const { return calls.count == 0; }
    Call operator[](std::size_t position) const { return Call(Json(calls.first[position]), Place()); }

private:
    JsonValues calls;
};

// An update element's calls.
struct ElementScript {
    ScriptedCalls<ScriptedCall> start;
    ScriptedCalls<ScriptedPoll> polls;
    ScriptedCalls<ScriptedFinish> finish;
};

class Script {
public:
    // A script of nothing.
    Script() = default;

    // The script written in `source`, which stands at `place`. Throws DocumentFault with the place of the first thing
    // that is wrong.
    Script(const Json& source, const Place& place);

    ScriptedCalls<ScriptedScan> scan;
    ScriptedCalls<ScriptedCall> lock;
    ScriptedCalls<ScriptedCall> updateFinish;
    ScriptedCalls<ScriptedCall> unlock;
    std::shared_ptr<const ValueFaults> values;  // null: none

    // The script of the element `key` (elementKey()), good as long as the whole; an empty one when it has none.
    ElementScript element(std::string_view key) const;

private:
    JsonDocument document;
    MemberIndex elements;
};

// What names an update element: the address of its board and its ID, "/ROOT/HCN#1".
std::string elementKey(const ZoCInventoryAddress& board, unsigned id);

// How far a script's lists have been used up.
class ScriptPositions {
public:
    // The entry of `calls` for the next call; nothing past the end. `list`, in the element `key` where it is one's own,
    // tells the lists apart.
    template <class Call>
    std::optional<Call> next(const ScriptedCalls<Call>& calls, const char* list, const std::string& key = "")
    {
        if (calls.empty()) {
            return std::nullopt;
        }
        std::size_t& position = positions[key + ' ' + list];
        return position < calls.size() ? std::optional(calls[position++]) : std::nullopt;
    }

private:
    std::unordered_map<std::string, std::size_t> positions;
};

}  // namespace TrellanSimulation
