// ErrorGuard: tells whether an error pool has grown.
//
// The one way in which a failed platform call is noticed: make a guard before the call, ask it afterwards.
#pragma once

#include "libZoErrorHandling/ZoCErrorListPool.h"

namespace ZoNUpdateBase {

class ErrorGuard {
public:
    explicit ErrorGuard(const ZoCErrorListPool& errors) : errors(errors), countBefore(errors.getErrorCount()) {}

    // True when errors were added since the guard was made.
    bool failed() const { return errors.getErrorCount() > countBefore; }

private:
    const ZoCErrorListPool& errors;
    unsigned countBefore;
};

}  // namespace ZoNUpdateBase
