// Options for an updater.
#pragma once

#include <string>

#include "ZoITrellanUpdater.h"

// Options for `command` on the archive in the folder `archivePath`, without progress lines.
ZoNTrellanUpdater::ZoTOptions optionsFor(unsigned command, const std::string& archivePath = "/no/such/archive");
