#include "support/UpdaterOptions.h"

ZoNTrellanUpdater::ZoTOptions optionsFor(unsigned command, const std::string& archivePath)
{
    ZoNTrellanUpdater::ZoTOptions options;
    options.archivePath = archivePath;
    options.descriptionFileName = "archive.json";
    options.noProgress = true;
    options.command = command;
    return options;
}
