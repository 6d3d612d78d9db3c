// A signal handler that writes words prepared beforehand, since a handler may do nothing else.
#include "tool/update/ImmediateEnd.h"

#include <unistd.h>

#include <array>
#include <csignal>

#include "tool/update/RawOutput.h"

namespace TrellanTool {

namespace {

constexpr int statusOfSignals = 128;

// What the handler looks at: it cannot be given anything else than the signal.
struct Prepared {
    LastWords words;
    struct sigaction before = {};
};

std::array<Prepared, NSIG>& prepared()
{
    static std::array<Prepared, NSIG> all;
    return all;
}

const Prepared* known = nullptr;  // by number; what a handler must not initialise

void end(int signal)
{
    writeRaw(STDERR_FILENO, known[signal].words.errors);
    writeLastOutput(known[signal].words.output);
    ::_exit(statusOfSignals + signal);
}

}  // namespace

ImmediateEnd::ImmediateEnd(const std::vector<int>& signals, const std::function<LastWords(int signal)>& wordsFor)
    : signals(signals)
{
    known = prepared().data();
    for (const int signal : signals) {
        prepared()[static_cast<std::size_t>(signal)].words = wordsFor(signal);
    }
    struct sigaction action = {};
    action.sa_handler = end;
    ::sigfillset(&action.sa_mask);
    for (const int signal : signals) {
        ::sigaction(signal, &action, &prepared()[static_cast<std::size_t>(signal)].before);
    }
}

ImmediateEnd::~ImmediateEnd()
{
    for (const int signal : signals) {
        struct sigaction current = {};
        ::sigaction(signal, nullptr, &current);
        if (current.sa_handler == end) {
            ::sigaction(signal, &prepared()[static_cast<std::size_t>(signal)].before, nullptr);
        }
    }
}

}  // namespace TrellanTool
