#include "tool/commands/LibrarySession.h"

#include <stdlib.h>

#include <cerrno>
#include <ostream>
#include <system_error>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"

namespace TrellanTool {

namespace {

void setEnvironment(const char* name, const std::optional<std::string>& value)
{
    if (value && ::setenv(name, value->c_str(), 1) != 0) {
        throw std::system_error(errno, std::generic_category(), name);
    }
}

unsigned countElements(ZoITrellanUpdater& updater)
{
    ZoNTrellanUpdater::ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    updater.getUpdateElementList(list, count);
    const std::unique_ptr<ZoNTrellanUpdater::ZoTUpdateElement[]> owner(list);
    return count;
}

void excludeElements(ZoITrellanUpdater& updater, const std::vector<std::uint32_t>& indices, std::ostream& err)
{
    if (indices.empty()) {
        return;
    }
    const unsigned count = countElements(updater);
    for (const std::uint32_t index : indices) {
        if (index >= count) {
            say(err, "warning: there is no element " + std::to_string(index) + " to exclude");
        }
        updater.disableUpdateElement(index);
    }
}

}  // namespace

LibrarySession::Destination LibrarySession::destination = {nullptr, false};

LibrarySession::LibrarySession(const Arguments& arguments, std::ostream& text)
    : arguments(arguments), before(destination)
{
    setEnvironment("TRELLAN_TARGET", arguments.targetFile);
    setEnvironment("TRELLAN_TRACE", arguments.traceFile);
    owned.reset(ZoITrellanUpdater::createInstance(arguments.options));
    owned->setMessageCallBack(print);
    destination = {&text, arguments.command->has(UPDATES)};
}

LibrarySession::~LibrarySession()
{
    owned.reset();
    destination = before;
}

void LibrarySession::print(const std::string& text)
{
    *destination.stream << text;
    if (destination.flushEachLine && text.find_first_of("\n\r") != std::string::npos) {
        destination.stream->flush();
    }
}

int LibrarySession::apply(std::ostream& err)
{
    switch (owned->apply()) {
        case 0:
            excludeElements(*owned, arguments.excluded, err);
            return SUCCESS;
        case 2:
            return NOT_SUPPORTED;
        default:
            return NOT_READ;
    }
}

}  // namespace TrellanTool
