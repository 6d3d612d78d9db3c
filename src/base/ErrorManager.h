// The platform's error manager, made on first use.
#pragma once

#include "libZoErrorHandling/ZoCErrorManager.h"

namespace ZoNUpdateBase {

inline ZoCErrorManager& errorManager()
{
    ZoCErrorManager* const manager = ZoCErrorManager::s_pErrorManager;
    return manager != nullptr ? *manager : *ZoCErrorManager::getSingleton();
}

}  // namespace ZoNUpdateBase
