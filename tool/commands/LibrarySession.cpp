// Makes the updater, passes its text on, and makes it anew where the filters mean more than it has understood.
#include "tool/commands/LibrarySession.h"

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <iostream>
#include <string_view>
#include <system_error>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/commands/TargetFilters.h"
#include "tool/documents/BlockingElements.h"
#include "tool/documents/ElementRecords.h"
#include "tool/update/LineTap.h"

namespace TrellanTool {

namespace {

void setEnvironment(const char* name, const std::optional<std::string>& value)
{
    if (value && ::setenv(name, value->c_str(), 1) != 0) {
        throw std::system_error(errno, std::generic_category(), name);
    }
}

void addTo(std::string& said, const std::string& text)
{
    said += said.empty() || text.empty() ? text : "\n" + text;
}

// Keeps what the platform says on standard error for the time of a scope, unless that goes nowhere.
class PlatformTap {
public:
    explicit PlatformTap(std::string& kept)
        : original(std::cerr.rdbuf()),
          target(original),
          tap(target, [&kept](const std::string& line) { addTo(kept, line); })
    {
        if (original != nullptr) {
            std::cerr.rdbuf(&tap);
        }
    }
    ~PlatformTap()
    {
        if (original != nullptr) {
            std::cerr.rdbuf(original);
        }
    }
    PlatformTap(const PlatformTap&) = delete;
    PlatformTap& operator=(const PlatformTap&) = delete;

private:
    std::streambuf* const original;
    std::ostream target;
    LineTap tap;
};

}  // namespace

LibrarySession::Destination LibrarySession::destination = {nullptr, false, nullptr, nullptr};

LibrarySession::LibrarySession(const Arguments& arguments, std::ostream& text)
    : arguments(arguments), before(destination), understood(arguments.options)
{
    setEnvironment("TRELLAN_TARGET", arguments.targetFile);
    setEnvironment("TRELLAN_TRACE", arguments.traceFile);
    makeUpdater();
    destination = {&text, arguments.command->has(UPDATES), nullptr, nullptr};
}

LibrarySession::~LibrarySession()
{
    looking.reset();
    owned.reset();
    destination = before;
}

void LibrarySession::makeUpdater()
{
    looking.reset();
    owned.reset(ZoITrellanUpdater::createInstance(understood));
    owned->setMessageCallBack(print);
    looking.reset(ZoITrellanInspector::createInstance(*owned));
}

void LibrarySession::print(const std::string& text)
{
    if (destination.announce) {
        destination.announce();
    }
    if (destination.copy != nullptr) {
        destination.copy->add(text);
    }
    if (destination.stream == nullptr) {
        return;
    }
    destination.stream->write(text.data(), static_cast<std::streamsize>(text.size()));
    if (destination.flushEachLine && text.find_first_of("\n\r") != std::string::npos) {
        destination.stream->flush();
    }
}

void LibrarySession::redirect(std::ostream& text)
{
    destination.stream = &text;
}

void LibrarySession::beforeEachText(std::function<void()> call)
{
    destination.announce = std::move(call);
}

int LibrarySession::apply(std::ostream& err)
{
    const bool filtered =
        !arguments.noCheck && arguments.command->has(ELEMENTS) && !TargetFilters(arguments.options).areOff();
    const unsigned result = filtered ? applyFiltered(err) : applyRecorded(false);
    if (result == 1) {
        explainFolder(err);
        addTo(said, platformSaid);
        addTo(said, applied.errors());
        return NOT_READ;
    }
    excludeElements(err);
    if (result == 2) {
        addTo(said, applied.errors());
        complainOfBlockingElements(err);
        return NOT_SUPPORTED;
    }
    if (filtered && arguments.command->has(UPDATES) && !selectElement(*looking)) {
        complain(err, "the filters select no element; nothing was done");
        return NOTHING_SELECTED;
    }
    said.clear();
    return SUCCESS;
}

unsigned LibrarySession::applyRecorded(bool keepsAll)
{
    applied.begin(keepsAll);
    platformSaid.clear();
    const PlatformTap tap(platformSaid);
    destination.copy = &applied;
    const unsigned result = owned->apply();
    destination.copy = nullptr;
    return result;
}

// What an updater prints that turns out to have misunderstood the filters is not shown.
unsigned LibrarySession::applyFiltered(std::ostream& err)
{
    std::ostream* const shown = destination.stream;
    destination.stream = nullptr;
    const unsigned result = applyRecorded(true);
    const bool misunderstood = result != 1 && !understandFilters(err);
    destination.stream = shown;
    if (misunderstood) {
        makeUpdater();
        return applyRecorded(false);
    }
    applied.forEachPiece(print);
    return result;
}

// False when the filters mean other elements than those that the updater has found.
bool LibrarySession::understandFilters(std::ostream& err)
{
    TargetFilters selecting(arguments.options);
    selecting.note(*owned, *looking);
    if (selecting.areExplained()) {
        return true;
    }
    TargetFilters filters(arguments.options);
    if (!noteWholeTarget(filters)) {
        return true;
    }
    for (const std::string& complaint : filters.complaints()) {
        complain(err, complaint);
    }
    return !filters.translate(understood);
}

bool LibrarySession::noteWholeTarget(TargetFilters& filters)
{
    ZoNTrellanUpdater::ZoTOptions whole = arguments.options;
    whole.boardTypes.clear();
    whole.serialNumbers.clear();
    whole.elementNames.clear();
    whole.command = ZoNTrellanUpdater::READ_INVENTORY;
    const std::unique_ptr<ZoITrellanUpdater> reader(ZoITrellanUpdater::createInstance(whole));
    reader->setMessageCallBack([](const std::string&) {});
    if (reader->apply() != 0) {
        return false;
    }
    const std::unique_ptr<ZoITrellanInspector> reading(ZoITrellanInspector::createInstance(*reader));
    filters.note(*reader, *reading);
    return true;
}

void LibrarySession::excludeElements(std::ostream& err)
{
    if (arguments.excluded.empty()) {
        return;
    }
    const unsigned count = looking->getElementCount();
    for (const std::uint32_t index : arguments.excluded) {
        if (index >= count) {
            say(err, "warning: there is no element " + std::to_string(index) + " to exclude");
        }
        owned->disableUpdateElement(index);
    }
}

// The library opens a folder like a file, and then finds no JSON in it.
void LibrarySession::explainFolder(std::ostream& err)
{
    const std::string path = understood.archivePath + "/" + understood.descriptionFileName;
    std::error_code error;
    if (arguments.command->has(ARCHIVE) && std::filesystem::is_directory(path, error)) {
        complain(err, "the description " + path + " is a folder; --description takes the name of a file");
    }
}

// There may be many lines, which are kept once.
void LibrarySession::complainOfBlockingElements(std::ostream& err)
{
    const std::size_t begun = said.size();
    forEachBlockingElement(ElementRecords(*owned, *looking, true), *looking,
                           [this](const std::string& line) { addTo(said, line); });
    const std::string_view lines = std::string_view(said).substr(begun);
    say(err, lines.substr(lines.starts_with('\n') ? 1 : 0));
}

void LibrarySession::complain(std::ostream& err, const std::string& text)
{
    say(err, text);
    addTo(said, text);
}

}  // namespace TrellanTool
