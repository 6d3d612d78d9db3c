#include "tool/Run.h"

#include <stdlib.h>

#include <cerrno>
#include <cstdio>
#include <exception>
#include <iostream>
#include <memory>
#include <system_error>

#include "tool/Arguments.h"
#include "tool/Document.h"

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

void excludeElements(ZoITrellanUpdater& updater, const Arguments& arguments, std::ostream& err)
{
    if (arguments.excluded.empty()) {
        return;
    }
    if (!arguments.hasElements) {
        err << "trellan-update: warning: " << arguments.command << " has no elements to exclude\n";
        return;
    }
    const unsigned count = countElements(updater);
    for (const std::uint32_t index : arguments.excluded) {
        if (index >= count) {
            err << "trellan-update: warning: there is no element " << index << " to exclude\n";
        }
        updater.disableUpdateElement(index);
    }
}

bool supportsReboot(ZoITrellanUpdater& updater)
{
    unsigned state = 0;
    return updater.checkRebootSupport(state);
}

// The library prints to standard output but does not tell when that fails.
bool isWritten(std::ostream& out)
{
    const bool flushed = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    return out.flush() && flushed;
}

int carryOut(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    setEnvironment("TRELLAN_TARGET", arguments.targetFile);
    setEnvironment("TRELLAN_TRACE", arguments.traceFile);
    const std::unique_ptr<ZoITrellanUpdater> updater(ZoITrellanUpdater::createInstance(arguments.options));
    if (arguments.json) {
        updater->setMessageCallBack([](const std::string& text) { std::cerr << text; });
    }
    if (const unsigned applied = updater->apply(); applied != 0) {
        return applied == 2 ? NOT_SUPPORTED : NOT_READ;
    }
    excludeElements(*updater, arguments, err);
    if (arguments.rebootSupport) {
        return supportsReboot(*updater) ? SUCCESS : FAILURE;
    }
    const bool successful = updater->run() == 1;
    if (arguments.json) {
        out << document(*updater, arguments.command, arguments.options.command);
    }
    return successful ? SUCCESS : FAILURE;
}

int runCommand(int argc, const char* const* argv, std::ostream& out, std::ostream& err)
{
    const Arguments arguments = parseArguments(argc, argv);
    out << arguments.help;
    const int status = arguments.help.empty() ? carryOut(arguments, out, err) : SUCCESS;
    if (status != SUCCESS || isWritten(out)) {
        return status;
    }
    err << "trellan-update: standard output cannot be written\n";
    return FAILURE;
}

}  // namespace

int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err)
{
    try {
        return runCommand(argc, argv, out, err);
    } catch (const UsageError& error) {
        err << "trellan-update: " << error.what() << "\nSee trellan-update --help.\n";
        return WRONG_USAGE;
    } catch (const std::exception& error) {
        err << "trellan-update: " << error.what() << '\n';
        return FAILURE;
    }
}

}  // namespace TrellanTool
