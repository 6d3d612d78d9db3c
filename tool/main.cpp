#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <ostream>

#include "tool/OutputBuffer.h"
#include "tool/Run.h"

namespace {

// Where one of the three was closed, the next file to be opened would take its place, and what is printed would be
// written into that file. So printing fails instead.
void occupyStandardDescriptors()
{
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) < 0) {
            ::open("/dev/null", O_RDONLY);
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    occupyStandardDescriptors();
    // A reader that goes away, as in "| head", must not end an update in the middle.
    std::signal(SIGPIPE, SIG_IGN);
    TrellanTool::OutputBuffer output(STDOUT_FILENO);
    TrellanTool::OutputBuffer errors(STDERR_FILENO);
    output.keepOrderWith(errors);
    errors.keepOrderWith(output);
    std::ostream out(&output);
    std::ostream err(&errors);
    return TrellanTool::run(argc, argv, out, err);
}
