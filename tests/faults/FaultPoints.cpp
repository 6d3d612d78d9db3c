// A program that is started for one point alone is told by its environment: TRELLAN_FAULT="allocation 17" or "call 5
// 0", counted from its start, and TRELLAN_FAULT_REPORT, the file to which what has failed goes.
#include "faults/FaultPoints.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace FaultPoints {

namespace {

std::atomic<Kind> chosenKind = Kind::none;
std::atomic<unsigned long> pointsLeft = 0;  // until the chosen one; 0: it has been passed
std::atomic<unsigned> chosenWay = 0;
std::atomic<const char*> failedCall = nullptr;
std::atomic<unsigned> waysOfCall = 0;
std::atomic<int> errorOfCall = 0;
std::atomic<long> held = 0;

enum class Environment { unread, isRead };
std::atomic<Environment> environment = Environment::unread;

// Before the first point, which comes before any object of the program has its value. Allocates nothing.
void readEnvironment()
{
    if (environment == Environment::isRead || environ == nullptr) {
        return;
    }
    environment = Environment::isRead;
    const char* const given = std::getenv("TRELLAN_FAULT");
    if (given == nullptr) {
        return;
    }
    char* rest = nullptr;
    const bool isCall = std::strncmp(given, "call ", 5) == 0;
    const unsigned long number = std::strtoul(std::strchr(given, ' '), &rest, 10);
    choose(isCall ? Kind::call : Kind::allocation, number, static_cast<unsigned>(std::strtoul(rest, nullptr, 10)));
}

// Past the calls that stand before those of the C library.
void report()
{
    const char* const name = std::getenv("TRELLAN_FAULT_REPORT");
    if (name == nullptr) {
        return;
    }
    char line[80];
    const int length = std::snprintf(line, sizeof line, "%s %u\n", failedCall.load(), waysOfCall.load());
    const long file = ::syscall(SYS_openat, AT_FDCWD, name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    ::syscall(SYS_write, file, line, static_cast<std::size_t>(length));
    ::syscall(SYS_close, file);
}

bool isChosen(Kind kind)
{
    readEnvironment();
    if (chosenKind != kind) {
        return false;
    }
    unsigned long left = pointsLeft;
    while (left != 0 && !pointsLeft.compare_exchange_weak(left, left - 1)) {
    }
    return left == 1;
}

void noteFailed(const char* call, unsigned ways)
{
    failedCall = call;
    waysOfCall = ways;
    report();
}

}  // namespace

void choose(Kind kind, unsigned long number, unsigned way)
{
    environment = Environment::isRead;
    chosenKind = Kind::none;
    failedCall = nullptr;
    waysOfCall = 0;
    errorOfCall = 0;
    chosenWay = way;
    pointsLeft = number;
    chosenKind = kind;
}

void chooseNone()
{
    chosenKind = Kind::none;
}

const char* failed()
{
    return failedCall;
}

unsigned ways()
{
    return waysOfCall;
}

bool isInterrupted()
{
    return errorOfCall == EINTR;
}

bool isFailingAllocation()
{
    if (!isChosen(Kind::allocation)) {
        return false;
    }
    noteFailed("allocation", 1);
    return true;
}

int errorOf(const char* call, std::initializer_list<int> errors)
{
    if (!isChosen(Kind::call)) {
        return 0;
    }
    noteFailed(call, static_cast<unsigned>(errors.size()));
    errorOfCall = chosenWay < errors.size() ? errors.begin()[chosenWay] : 0;
    return errorOfCall;
}

void noteAllocation(int change)
{
    held += change;
}

long allocationsHeld()
{
    return held;
}

}  // namespace FaultPoints
