// ZoCErrorList: an error pool of its own, apart from the master error list.
//
// Made by ZoCErrorManager::createErrorList and released by ZoCErrorManager::deleteErrorList, in pairs.
#pragma once

#include "libZoErrorHandling/ZoCErrorListPool.h"

class ZoCErrorList : public ZoCErrorListPool {
    friend class ZoCErrorManager;

    ZoCErrorList();
    ~ZoCErrorList() override;
};
