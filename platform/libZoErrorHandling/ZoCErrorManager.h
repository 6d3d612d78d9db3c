// ZoCErrorManager: the process's error manager.
//
// One instance for the process. It owns the master error list, makes further lists, knows the registered message tables
// and sends log messages and warnings. Neither it nor its lists are thread safe: all calls come from the host's thread.
#pragma once

#include "libZoErrorHandling/ZoCErrorList.h"
#include "libZoErrorHandling/ZoCErrorListPool.h"
#include "libZoErrorHandling/ZoResText.h"

class ZoCErrorManager {
public:
    ZoCErrorManager(const ZoCErrorManager&) = delete;
    ZoCErrorManager& operator=(const ZoCErrorManager&) = delete;

    // The instance; null until getSingleton() was called for the first time.
    static ZoCErrorManager* s_pErrorManager;

    // Creates the instance when there is none, and returns it. It lives as long as the process.
    static ZoCErrorManager* getSingleton();

    // Makes the texts of `table` known, or forgets them again. `table` must stay where it is in between.
    static void _registerMessages(const ZoResText& table);
    static void _unregisterMessages(const ZoResText& table);

    // The error list of the whole process. Owned by the manager.
    ZoCErrorListPool& getMasterErrorList() noexcept;

    // Makes an empty error list, owned by the caller until it is given back with deleteErrorList. The arguments are, in
    // this order: parent list (0: none), number of pools, initial size of a pool and its growth (in errors), and the
    // room reserved for one error's text (in bytes). They are hints about size; no error is ever dropped.
    ZoCErrorList* createErrorList(unsigned parent, unsigned pools, unsigned size, unsigned growth, unsigned textSize);

    // Releases a list made by createErrorList, with its errors. Null is allowed.
    void deleteErrorList(ZoCErrorList* list) noexcept;

    // Seconds for one tick of the errors' time stamps.
    double getTimeStampFactor() const noexcept;

    // Sends the text registered for `code` to the log, or as a warning to the user. `line` and `function` name the
    // place of the call. `format` holds one printf conversion (%s, %d, %i, %u, %x or %c) for each argument that fills
    // the text's %1, %2, ...; null when there are none.
    void sendLog(unsigned code, unsigned line, const char* function, const char* format, ...);
    void sendWarning(unsigned code, unsigned line, const char* function, const char* format = nullptr, ...);

private:
    ZoCErrorManager();
    ~ZoCErrorManager();
};
