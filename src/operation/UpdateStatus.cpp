// Waiting for the updates of a phase.
#include <atomic>
#include <iterator>

#include "base/ErrorGuard.h"
#include "libZoInventoryManagerAP/ZoCInventoryManager.h"
#include "libZoRtosAbstraction/ZoNRtosAbstraction.h"
#include "operation/ZoCUpdateOperation.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;
using namespace ZoNUpdateInventory;

namespace {

constexpr unsigned pauseBetweenPasses = 200'000;  // microseconds
constexpr unsigned toleratedErrors = 1;           // consecutive polls with errors that do not fail an element
constexpr unsigned complete = 100;                // percent

// What the inventory manager says of an update; any other value: failed.
constexpr unsigned statusRunning = 1;
constexpr unsigned statusFinished = 2;

// The next picture of the progress line. One spinner turns for the whole library, whatever updater asks.
const char* nextSpinnerPicture()
{
    constexpr const char* pictures[] = {"-", "\\", "|", "/"};
    static std::atomic<unsigned> position = 0;
    return pictures[position++ % std::size(pictures)];
}

}  // namespace

void ZoCUpdateOperation::updateStatus(PhaseList& list)
{
    if (list.empty()) {
        return;
    }
    bool again;
    do {
        unsigned long long sum = 0;
        unsigned counted = 0;
        again = false;
        for (ZoSUpdateElement* const element : list) {
            switch (element->updateState) {
                case RUNNING:
                    ++counted;
                    again = true;  // one more pass shows the result of this poll
                    sum += pollElement(*element);
                    break;
                case FAILED:
                case FINISHED:
                    ++counted;
                    sum += complete;
                    break;
                default:
                    break;
            }
        }
        if (counted == 0) {
            return;
        }
        const unsigned percent = static_cast<unsigned>(sum / counted);
        if (!options->noProgress) {
            updater->print("%3u%% %-51.51s\r", percent, nextSpinnerPicture());
        }
        updater->ReportProgress(percent);
        ZoNRtosAbstraction::usleep(pauseBetweenPasses);
    } while (again);
    if (!options->noProgress) {
        updater->print("%3u%% %-51.51s", complete, "");  // overwrites the spinner; the result follows on this line
    }
}

// Polls a running element and returns how far it is, in percent.
unsigned long long ZoCUpdateOperation::pollElement(ZoSUpdateElement& element)
{
    const auto fail = [&] {
        element.updateState = FAILED;
        updater->ReportFailure(element.index);
        return complete;
    };
    unsigned id = element.id;
    unsigned status = 0;
    unsigned done = 0;
    unsigned total = 0;
    const ErrorGuard guard(*element.statusErrorList);
    ZoCInventoryManager::getInstance()->updateStatus2(*element.statusErrorList, element.boardAddress, id, status, done,
                                                      total, nullptr);
    if (guard.failed()) {
        return ++element.statusErrorCount > toleratedErrors ? fail() : 0;
    }
    element.statusErrorCount = 0;
    switch (status) {
        case statusRunning:
            return total == 0 ? complete : 100ULL * done / total;
        case statusFinished:
            element.updateState = FINISHED;
            return complete;
        default:
            return fail();
    }
}
