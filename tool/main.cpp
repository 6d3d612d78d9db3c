#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <ostream>

#include "tool/ExitStatus.h"
#include "tool/OutputBuffer.h"
#include "tool/Run.h"
#include "tool/update/RawOutput.h"

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

// Whether there is memory to begin with. Where there is less than this, the C++ library may have had none to put aside
// for exceptions either, and whatever is thrown would end the process by abort.
bool isThereMemory()
{
    constexpr std::size_t needed = std::size_t{512} * 1024;
    void* volatile const memory = std::malloc(needed);  // volatile: it must not be optimised away
    std::free(memory);
    return memory != nullptr;
}

// The memory of a document's text is needed again for the next one. It would be given back to the system, and got again
// page by page; so it stays with what is freed, as long as something in use lies behind it.
void keepMemory()
{
#ifdef M_MMAP_THRESHOLD
    constexpr int largest = 64 * 1024 * 1024;
    ::mallopt(M_MMAP_THRESHOLD, largest);
#endif
}

// For whoever prints through std::cerr, too. Never destroyed: the platform's libraries still do while they are
// unloaded.
TrellanTool::OutputBuffer& standardError()
{
    static auto& buffer = *new TrellanTool::OutputBuffer(STDERR_FILENO);
    std::cerr.rdbuf(&buffer);
    return buffer;
}

// Ends the order that the outputs keep with one that is about to go.
class OrderEnd {
public:
    explicit OrderEnd(TrellanTool::OutputBuffer& buffer) : buffer(buffer) {}
    ~OrderEnd() { buffer.keepNoOrder(); }
    OrderEnd(const OrderEnd&) = delete;
    OrderEnd& operator=(const OrderEnd&) = delete;

private:
    TrellanTool::OutputBuffer& buffer;
};

int runTool(int argc, char** argv)
{
    TrellanTool::OutputBuffer output(STDOUT_FILENO);
    TrellanTool::OutputBuffer& errors = standardError();
    output.keepOrderWith(errors);
    errors.keepOrderWith(output);
    const OrderEnd orderEnd(errors);
    std::ostream out(&output);
    std::ostream err(&errors);
    return TrellanTool::run(argc, argv, out, err);
}

// Where memory is too short for the buffers, or for the words of another fault. Needs none itself.
int failedFor(const char* reason)
{
    for (const char* const text : {"trellan-update: ", reason, "\n"}) {
        TrellanTool::writeRaw(STDERR_FILENO, text);
    }
    return TrellanTool::FAILURE;
}

}  // namespace

int main(int argc, char** argv)
{
    occupyStandardDescriptors();
    keepMemory();
    // A reader that goes away, as in "| head", must not end an update in the middle.
    std::signal(SIGPIPE, SIG_IGN);
    // Nor must a file that may not grow any further: writing to it fails, and what was begun is cleaned up.
    std::signal(SIGXFSZ, SIG_IGN);
    // Whoever ignores it never learns how a program that it has started has ended, such as a copy to the device.
    std::signal(SIGCHLD, SIG_DFL);
    if (!isThereMemory()) {
        return failedFor(TrellanTool::noMemory);
    }
    try {
        return runTool(argc, argv);
    } catch (const std::bad_alloc&) {
        return failedFor(TrellanTool::noMemory);
    } catch (const std::exception& error) {
        return failedFor(error.what());
    }
}
