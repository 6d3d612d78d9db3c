// ErrorPool: an error list for the time of a scope.
#pragma once

#include <string>

#include "libZoErrorHandling/ZoCErrorManager.h"

class ErrorPool {
public:
    ErrorPool() : list(ZoCErrorManager::getSingleton()->createErrorList(0, 1, 20, 5, 300)) {}
    ~ErrorPool() { ZoCErrorManager::getSingleton()->deleteErrorList(list); }
    ErrorPool(const ErrorPool&) = delete;
    ErrorPool& operator=(const ErrorPool&) = delete;

    // The list itself, also where one is asked for.
    ZoCErrorListPool& get() { return *list; }
    operator ZoCErrorListPool&() { return *list; }

    unsigned count() const { return list->getErrorCount(); }

    // Code and text of error `index`.
    unsigned code(unsigned index) const { return list->getErrorCode(index); }
    std::string text(unsigned index) const { return list->getErrorText(index); }

private:
    ZoCErrorList* list;
};
