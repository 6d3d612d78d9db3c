// From the arguments to the action of a command, and from what it throws to an exit status.
#include "tool/Run.h"

#include <algorithm>
#include <exception>
#include <new>
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Help.h"
#include "tool/commands/PrintHelp.h"
#include "tool/commands/WrittenFiles.h"
#include "tool/update/RawOutput.h"

namespace TrellanTool {

namespace {

int carryOut(const Arguments& arguments, const Streams& streams)
{
    std::ostream nowhere(nullptr);
    std::ostream& out = arguments.quiet ? nowhere : streams.out;
    if (arguments.help) {
        tellHelp(out, arguments.command, arguments.json);
        return SUCCESS;
    }
    if (arguments.version) {
        tellToolVersion(out, arguments.json);
        return SUCCESS;
    }
    for (const std::string& note : arguments.notes) {
        say(streams.err, note);
    }
    keepFromWriting(arguments);
    return arguments.command->action(arguments, {out, streams.err});
}

int runWords(int argc, const char* const* argv, const Streams& streams)
{
    try {
        return carryOut(parseArguments({argv + std::min(argc, 1), argv + argc}), streams);
    } catch (const UsageError& error) {
        const std::string mistake = error.what();
        say(streams.err, argc <= 1 ? commandsAndExample() : mistake + "\nsee " + helpCommand(error.command));
        return WRONG_USAGE;
    } catch (const std::bad_alloc&) {
        say(streams.err, noMemory);
        return FAILURE;
    } catch (const std::exception& error) {
        say(streams.err, error.what());
        return FAILURE;
    }
}

}  // namespace

int run(int argc, const char* const* argv, std::ostream& out, std::ostream& err)
{
    const int status = runWords(argc, argv, {out, err});
    const bool isWritten = static_cast<bool>(out.flush());
    if (!isWritten) {
        say(err, outputLost);
    }
    err.flush();
    return !isWritten && (status == SUCCESS || status == UPDATES_AVAILABLE) ? FAILURE : status;
}

}  // namespace TrellanTool
