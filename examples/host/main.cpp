// A small host for the terminal: shows what an update would do, asks, updates, and says what became of each element.
//
//   trellan-host ARCHIVE        (the folder of the firmware archive)
#include <signal.h>
#include <stdlib.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "ZoTrellanHost.hpp"

namespace {

using namespace ZoTrellanHost;

enum ExitStatus { DONE = 0, FAILURE = 1, USAGE = 2, STOPPED = 3 };

const char* describe(State state)
{
    switch (state) {
        case State::NO_FILE:
            return "the archive has no file for it";
        case State::CUSTOM:
            return "custom, left out";
        case State::UP_TO_DATE:
            return "up to date";
        case State::EXCLUDED:
            return "excluded";
        case State::BLOCKED:
            return "blocked, since the archive does not support the target";
        case State::UPDATE:
            return "to be updated";
        case State::UPDATED:
            return "updated";
        case State::FAILED:
            return "FAILED";
        case State::CANCELLED:
            return "not begun, since its board failed";
        case State::MISSING_FILE:
            return "NOT UPDATED: its file is missing";
        case State::NOT_STARTED:
            return "not begun";
        case State::RUNNING:
            return "BEGUN, and not known to have ended";
    }
    return "in a state that this host does not know";  // of a later library
}

// Prints each element with its state and errors; returns how many are to be updated.
unsigned print(const Updater& updater)
{
    unsigned toUpdate = 0;
    for (const Element& element : updater.elements()) {
        const State state = updater.state(element.index);
        toUpdate += state == State::UPDATE ? 1 : 0;
        std::printf("  %-45s %-10s %-10s %s\n", element.displayName.c_str(), element.installedVersion.c_str(),
                    element.availableVersion.c_str(), describe(state));
        for (const Error& error : updater.errors(element.index)) {
            std::printf("      error: %s\n", error.text.c_str());
        }
    }
    return toUpdate;
}

bool confirm(unsigned count)
{
    std::printf("Update %u elements? [y/N] ", count);
    std::fflush(stdout);
    std::string answer;
    return std::getline(std::cin, answer) && (answer == "y" || answer == "Y");
}

// Has Ctrl-C and SIGTERM cancel, and nothing else. They are blocked, so that the thread alone takes them, and ignored,
// which holds for programs that are started too: a file that is being copied is not disturbed, although a terminal
// sends its signals to the copying program as well. (That they are blocked, the shell on the way would not pass on.)
void cancelWhenInterrupted(const CancellationToken& token)
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int stopping : {SIGINT, SIGTERM}) {
        sigaddset(&signals, stopping);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    for (const int stopping : {SIGINT, SIGTERM}) {
        ::signal(stopping, SIG_IGN);
    }
    std::thread([signals, token] {
        for (int taken = 0; sigwait(&signals, &taken) == 0;) {
            token.cancel();
            std::fputs("\nStopping behind this phase ...\n", stderr);
        }
    }).detach();
}

int update(const std::string& archive)
{
    Options options;
    options.archivePath = archive;
    options.descriptionFileName = "archive.json";
    options.command = ZoNTrellanUpdater::UPDATE;
    options.noProgress = true;  // no progress lines among the text: this host has its own

    Updater updater(options);
    std::string said;
    updater.onMessage([&said](const std::string& text) { said += text; });
    const Applied applied = updater.apply();
    if (applied == Applied::NOT_READ) {
        std::fputs(said.c_str(), stderr);
        return FAILURE;
    }

    const ArchiveInfo info = updater.archiveInfo();
    std::printf("%s %s\n", info.name.c_str(), info.version.c_str());
    const unsigned count = print(updater);
    if (applied == Applied::NOT_SUPPORTED) {
        std::fputs("The archive does not support this target.\n", stderr);
        return FAILURE;
    }
    if (count == 0) {
        std::puts("Nothing is to be updated.");
        return DONE;
    }
    if (!confirm(count)) {
        std::puts("Nothing was changed.");
        return STOPPED;
    }

    unsigned current = 0;
    updater.onPhase([&current](unsigned phase) { current = phase + 1; });
    updater.onProgress([&current](unsigned percent) {
        std::printf("\rPhase %u: %3u %%", current, percent);
        std::fflush(stdout);
    });
    said.clear();  // from here on it is what the update has to say
    const CancellationToken token;
    cancelWhenInterrupted(token);
    ::signal(SIGCHLD, SIG_DFL);  // ignored, as another program may have left it, each copy would count as failed
    const Result result = updater.run(token);
    std::puts("");
    print(updater);
    switch (result) {
        case Result::SUCCESSFUL:
            std::puts("Done.");
            return DONE;
        case Result::CANCELLED:  // in order, unless the target could not be unlocked
            std::fputs(said.c_str(), stderr);
            std::puts("Stopped.");
            return STOPPED;
        default:  // the reason may be no element's: a target that is locked, an error at the end
            std::fputs(said.c_str(), stderr);
            std::puts("Failed.");
            return FAILURE;
    }
}

}  // namespace

int main(int count, char** arguments)
{
    if (count != 2) {
        std::fprintf(stderr, "Usage: %s ARCHIVE\n", arguments[0]);
        return USAGE;
    }
    char* const archive = ::realpath(arguments[1], nullptr);  // the library wants it absolute
    if (archive == nullptr) {
        std::perror(arguments[1]);
        return FAILURE;
    }
    const std::string path = archive;
    ::free(archive);
    try {
        return update(path);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", arguments[0], error.what());
        return FAILURE;
    }
}
