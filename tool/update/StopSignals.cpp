#include "tool/update/StopSignals.h"

#include <csignal>

namespace TrellanTool {

namespace {

struct NamedSignal {
    int number;
    const char* name;
};

constexpr NamedSignal namedSignals[] = {{SIGHUP, "SIGHUP"}, {SIGINT, "SIGINT"}, {SIGTERM, "SIGTERM"}};

bool isIgnored(int signal)
{
    struct sigaction action = {};
    return ::sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

}  // namespace

std::vector<int> stopSignals()
{
    std::vector<int> result;
    for (const NamedSignal& signal : namedSignals) {
        if (!isIgnored(signal.number)) {
            result.push_back(signal.number);
        }
    }
    return result;
}

const char* signalName(int signal)
{
    for (const NamedSignal& named : namedSignals) {
        if (named.number == signal) {
            return named.name;
        }
    }
    return "a signal";
}

void ignoreSignals(const std::vector<int>& signals)
{
    for (const int signal : signals) {
        std::signal(signal, SIG_IGN);
    }
}

}  // namespace TrellanTool
