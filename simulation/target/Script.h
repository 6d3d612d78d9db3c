// The script of a simulated target: what goes otherwise than normal, call by call.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "simulation/libZoInventoryTree/Document.h"
#include "simulation/libZoInventoryTree/TreeItem.h"

namespace TrellanSimulation {

// What happens at one call: the errors that it adds.
struct ScriptedCall {
    std::vector<ZoSErrorRecord> errors;
};

struct ScriptedScan : ScriptedCall {
    int result = 0;  // what the scan returns
};

struct ScriptedPoll : ScriptedCall {
    unsigned status = 1;
    unsigned done = 0;
    unsigned total = 0;
};

struct ScriptedFinish : ScriptedCall {
    std::vector<ZoSErrorRecord> results;  // what the update has reported
};

// An update element's calls.
struct ElementScript {
    std::vector<ScriptedCall> start;
    std::vector<ScriptedPoll> polls;
    std::vector<ScriptedFinish> finish;
};

struct Script {
    std::vector<ScriptedScan> scan;
    std::vector<ScriptedCall> lock;
    std::vector<ScriptedCall> updateFinish;
    std::vector<ScriptedCall> unlock;
    std::shared_ptr<const ValueFaults> values;                // null: none
    std::unordered_map<std::string, ElementScript> elements;  // by elementKey()

    // The script of the element `key`; an empty one when it has none.
    const ElementScript& element(const std::string& key) const;
};

// What names an update element: the address of its board and its ID, "/ROOT/HCN#1".
std::string elementKey(const ZoCInventoryAddress& board, unsigned id);

// The script written in `source`, which stands at `place`. Throws DocumentFault with the place of the first thing that
// is wrong.
Script readScript(const Json& source, const Place& place);

// How far a script's lists have been used up.
class ScriptPositions {
public:
    // The entry of `entries` for the next call; null past the end. `list`, in the element `key` where it is one's own,
    // tells the lists apart.
    template <class Entry>
    const Entry* next(const std::vector<Entry>& entries, const char* list, const std::string& key = "")
    {
        if (entries.empty()) {
            return nullptr;
        }
        std::size_t& position = positions[key + ' ' + list];
        return position < entries.size() ? &entries[position++] : nullptr;
    }

private:
    std::unordered_map<std::string, std::size_t> positions;
};

}  // namespace TrellanSimulation
