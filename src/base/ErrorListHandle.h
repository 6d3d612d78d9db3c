// Error lists of our own, given back to the error manager by whoever holds them.
#pragma once

#include <memory>

#include "base/ErrorManager.h"

namespace ZoNUpdateBase {

struct ErrorListDeleter {
    void operator()(ZoCErrorList* list) const noexcept { errorManager().deleteErrorList(list); }
};

using ErrorListHandle = std::unique_ptr<ZoCErrorList, ErrorListDeleter>;

// A new, empty list.
inline ErrorListHandle makeErrorList()
{
    return ErrorListHandle(errorManager().createErrorList(0, 1, 20, 5, 300));
}

}  // namespace ZoNUpdateBase
