// Errors that a document lists: [{"code": 4, "text": "no room"}, ...].
#pragma once

#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "simulation/libZoInventoryTree/Document.h"

namespace TrellanSimulation {

// Stays in the document: a script of a hundred thousand calls needs few of its errors at a time.
class ErrorEntries {
public:
    // None.
    ErrorEntries() = default;

    // Those of the array `source`, good as long as its document is. Throws DocumentFault with the place of the first
    // thing that is wrong; `source` stands at `place`.
    ErrorEntries(const Json& source, const Place& place);

    bool empty() const { return errors.count == 0; }

    void addTo(ZoCErrorListPool& pool) const;

private:
    JsonValues errors;
};

}  // namespace TrellanSimulation
