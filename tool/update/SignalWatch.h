// While the target is locked, signals that stop the update are waited for by a thread, and disturb nothing else:
// neither the update nor the programs that it starts.
#pragma once

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <optional>
#include <thread>
#include <vector>

namespace TrellanTool {

class SignalWatch {
public:
    // Both are called on the waiting thread and must not throw.
    struct Listener {
        std::function<void(int signal, bool again)> signalCame;  // `again`: not the first one
        std::function<void()> patienceEnded;
    };

    // Blocks the signals, has them ignored, and starts a thread that waits for them. Programs that are started
    // meanwhile inherit that they are ignored, which a shell on the way keeps, as it does not keep that they are
    // blocked. The C library's system() throws a SIGINT away that has come when it starts or ends a program, and that
    // nobody has taken yet: the thread takes signals as soon as the machine lets it run. Unless endPatience() is called
    // within `patience`, the listener hears of that, once. Throws std::system_error when there can be no thread; the
    // signals stay blocked and ignored then.
    SignalWatch(const std::vector<int>& signals, Listener listener,
                std::optional<std::chrono::duration<double>> patience);

    // Stops waiting. The signals stay ignored: what the process ends with is decided.
    ~SignalWatch();
    SignalWatch(const SignalWatch&) = delete;
    SignalWatch& operator=(const SignalWatch&) = delete;

    // The signal that came first, also one that came just before the watch began; 0: none.
    int firstSignal() const { return first; }

    // What was waited for has come. False: too late, the listener is being told.
    bool endPatience();

private:
    enum class Patience { LASTS, NOT_NEEDED, ENDED };

    void takePending();
    void wait();
    int nextSignal();
    void take(int signal);

    const Listener listener;
    const std::optional<std::chrono::steady_clock::time_point> deadline;
    sigset_t waited;      // the signals, and the one that ends the thread
    sigset_t maskBefore;  // of the thread that has made the watch
    std::atomic<int> first = 0;
    std::atomic<Patience> state;
    std::atomic<bool> isStopping = false;
    std::thread thread;
};

}  // namespace TrellanTool
