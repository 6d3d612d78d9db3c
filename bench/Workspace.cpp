#include "Workspace.h"

#include <stdlib.h>

#include <algorithm>
#include <stdexcept>

#include "archive/ZoCUpdateArchive.h"
#include "inventory/ZoCUpdateInventory.h"

namespace {

std::unique_ptr<OpenUpdater> silentUpdater(const ZoNTrellanUpdater::ZoTOptions& options)
{
    auto updater = std::make_unique<OpenUpdater>(options);
    updater->setMessageCallBack([](const std::string&) {});
    return updater;
}

}  // namespace

Workspace::Workspace(const ZoNTrellanUpdater::ZoTOptions& options)
    : instance(silentUpdater(options)), errorList(ZoNUpdateBase::makeErrorList())
{
}

std::string Workspace::write(const std::string& name, const std::string& text) const
{
    return folder.write(name, text).string();
}

void Workspace::readArchive(unsigned count, const Members& members)
{
    readArchive(write("archive.json", textOf(descriptionOf(count, members))));
}

void Workspace::readArchive(const std::filesystem::path& description)
{
    if (!instance->getArchive().readDescriptionFileJson(*errorList, description.string())) {
        throw std::runtime_error("the archive description is not valid");
    }
}

void Workspace::makeElements(unsigned count, const Change& change)
{
    for (unsigned i = 0; i < count; ++i) {
        ZoNUpdateInventory::ZoSUpdateElement& element = instance->getInventory().appendElement();
        const std::uint32_t index = element.index;
        static_cast<Element&>(element) = elementOf(i, change);
        element.index = index;
    }
}

double Workspace::assignedElements()
{
    const auto& elements = instance->getInventory().getUpdateElementList();
    return static_cast<double>(std::count_if(elements.begin(), elements.end(),
                                             [](const auto& element) { return element.updateFileIndex >= 0; }));
}

ZoNTrellanUpdater::ZoTOptions optionsFor(ZoNTrellanUpdater::ZoTCommand command, const std::filesystem::path& folder)
{
    ::setenv("TRELLAN_TARGET", (folder / "target.json").c_str(), 1);
    ZoNTrellanUpdater::ZoTOptions options;
    options.command = command;
    options.archivePath = folder.string();
    options.descriptionFileName = "archive.json";
    return options;
}

std::unique_ptr<OpenUpdater> appliedUpdater(const ZoNTrellanUpdater::ZoTOptions& options)
{
    std::unique_ptr<OpenUpdater> updater = silentUpdater(options);
    if (updater->apply() != 0) {
        throw std::runtime_error("the archive or the target cannot be read");
    }
    return updater;
}
