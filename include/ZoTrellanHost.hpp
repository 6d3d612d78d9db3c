// The library for hosts in C++, without ceremony: an owner with callbacks of its own, vectors, states and errors as
// values, cancellation. Header only, on top of the two interfaces; compiles as C++11.
//
//   ZoTrellanHost::Options options;
//   options.archivePath = "/path/of/the/archive";
//   options.descriptionFileName = "archive.json";
//   options.command = ZoNTrellanUpdater::UPDATE;
//
//   ZoTrellanHost::Updater updater(options);
//   updater.onProgress([&bar](unsigned percent) { bar.show(percent); });
//   const bool updated = updater.apply() == ZoTrellanHost::Applied::READY &&
//                        updater.run() == ZoTrellanHost::Result::SUCCESSFUL;
//
// What ZoITrellanUpdater.h says of threads, and of SIGCHLD during an update, holds here too.
#ifndef ZOTRELLANHOST_HPP
#define ZOTRELLANHOST_HPP

#include <atomic>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ZoITrellanInspector.h"
#include "ZoITrellanUpdater.h"

namespace ZoTrellanHost {

typedef ZoNTrellanUpdater::ZoTOptions Options;
typedef ZoNTrellanUpdater::ZoTUpdateElement Element;
typedef ZoNTrellanUpdater::ZoTUpdateFile File;
typedef ZoNTrellanInspector::ZoTState State;
typedef ZoNTrellanInspector::ZoTError Error;

// What apply() has come to.
enum class Applied {
    READY,         // the command can be carried out
    NOT_READ,      // the archive or the target's inventory could not be read
    NOT_SUPPORTED  // the archive does not support the target: nothing will be updated
};

// What run() has come to.
enum class Result {
    SUCCESSFUL,
    FAILED,    // something failed, or errors were reported
    CANCELLED  // the update was stopped by its token before a phase; each element's state tells how far it came, and
               // the text ends with the errors that were reported, if any: of unlocking the target, for instance
};

// Whether the device can be rebooted automatically.
enum class RebootSupport {
    SUPPORTED,
    NO_FIRMWARE,      // the inventory was not read, or has no active firmware
    NOT_BY_FIRMWARE,  // the installed firmware does not support it
    NOT_BY_DEVICE,
    UNKNOWN  // checking failed
};

// What the archive says of itself. Before an archive was read both versions are "0.0", the other texts empty.
struct ArchiveInfo {
    std::string name;
    std::string version;
    std::string productName;
    std::string formatVersion;
    std::string variant;
};

// Stops an update. Copies stop the same one; any thread may cancel, and a signal handler too, through a copy that was
// made before.
class CancellationToken {
public:
    CancellationToken() : cancelled(std::make_shared<std::atomic<bool>>(false)) {}
    // What is moved is copied, so that the old one goes on stopping the same update.
    CancellationToken(const CancellationToken&) = default;
    CancellationToken& operator=(const CancellationToken&) = default;

    void cancel() const noexcept { cancelled->store(true); }
    bool isCancelled() const noexcept { return cancelled->load(); }

private:
    std::shared_ptr<std::atomic<bool>> cancelled;
};

// Owns an updater, and an inspector of it. Order of use: the callbacks if wanted, apply(), the lists if wanted, run().
// One command, once. May be moved, but not from or in its own callbacks, nor be deleted there.
//
// Operations throw std::bad_alloc when memory is short, and std::out_of_range for the index of an element that there is
// not. After a move the old one is only good for deleting it.
class Updater {
public:
    explicit Updater(const Options& options) : host(new Host(options)) {}

    // The callbacks; an empty function switches one off. They may be set at any time, and are called within apply(),
    // run() and rebootSupport(), on the caller's thread. What they throw passes through; the target is unlocked before.
    // A callback may ask for anything here; apply() and run() of the same updater fail at once in it.

    // A phase of the update begins, from 0.
    void onPhase(std::function<void(unsigned phase)> call) { host->phase = std::move(call); }
    // The last phase has ended.
    void onEndOfPhases(std::function<void()> call) { host->endOfPhases = std::move(call); }
    // The update of the element with this index failed or was cancelled.
    void onFailure(std::function<void(unsigned index)> call) { host->failure = std::move(call); }
    // Progress of the phase in percent.
    void onProgress(std::function<void(unsigned percent)> call) { host->progress = std::move(call); }
    // Takes all text in pieces: one may be part of a line. Without it text goes to standard output.
    void onMessage(std::function<void(const std::string& text)> call)
    {
        host->message = std::move(call);
        host->updater->setMessageCallBack(host->message ? &Host::takeMessage : nullptr);
    }

    // Reads what the command needs. To be called once.
    Applied apply()
    {
        const Calling calling(*host);
        const unsigned code = host->updater->apply();
        host->isReady = code == 0;
        return host->isReady ? Applied::READY : code == 2 ? Applied::NOT_SUPPORTED : Applied::NOT_READ;
    }

    // Carries out the command. FAILED at once, with nothing done or said, unless apply() was READY before. Once `token`
    // is cancelled, no further phase of an update begins: the phase that runs comes to its end, and the target is
    // unlocked. In its last phase an update that is cancelled ends as it would have ended.
    Result run(const CancellationToken& token = CancellationToken())
    {
        if (!host->isReady) {
            return Result::FAILED;
        }
        const Calling calling(*host);
        if (token.isCancelled()) {
            return Result::CANCELLED;
        }
        const Stopping stopping(*host, token);
        try {
            return host->updater->run() == 1 ? Result::SUCCESSFUL : Result::FAILED;
        } catch (const Stop&) {  // thrown by takePhase(); the library has unlocked the target
            return Result::CANCELLED;
        }
    }

    // The target's elements as apply() found them, then the archive's files that the flash drive does not have yet. An
    // element's position is its index.
    std::vector<Element> elements() const
    {
        Element* list = nullptr;
        unsigned count = 0;
        host->updater->getUpdateElementList(list, count);
        return moved(list, count);
    }

    // The archive's update files as apply() read them.
    std::vector<File> files() const
    {
        File* list = nullptr;
        unsigned count = 0;
        host->updater->getUpdateFileList(list, count);
        return moved(list, count);
    }

    ArchiveInfo archiveInfo() const
    {
        ArchiveInfo info;
        host->updater->getArchiveInfo(info.name, info.version, info.productName, info.formatVersion, info.variant);
        return info;
    }

    // Leaves an element out of the update that run() will make.
    void exclude(unsigned index)
    {
        host->inspector->getElement(index);  // throws for one that there is not
        host->updater->disableUpdateElement(index);
    }

    // What becomes, or became, of an element, and the errors of its update.
    State state(unsigned index) const { return host->inspector->getElement(index).state; }
    std::vector<Error> errors(unsigned index) const
    {
        std::vector<Error> all;
        const unsigned count = host->inspector->getElementErrorCount(index);
        all.reserve(count);
        for (unsigned position = 0; position < count; ++position) {
            all.push_back(host->inspector->getElementError(index, position));
        }
        return all;
    }

    // Prints why the device cannot be rebooted, too.
    RebootSupport rebootSupport()
    {
        const Calling calling(*host);
        unsigned state = 0;
        host->updater->checkRebootSupport(state);
        return state <= 3 ? static_cast<RebootSupport>(state) : RebootSupport::UNKNOWN;
    }

    // The interfaces, for what is not here. They stay owned; their callbacks belong to this class, which knows of its
    // own calls alone. An operation that is called through them calls back whichever updater of this class is at work:
    // within a callback the one whose callback it is, with text too, otherwise nobody, and text is lost where
    // onMessage() is set.
    ZoITrellanUpdater& updater() { return *host->updater; }
    ZoITrellanInspector& inspector() { return *host->inspector; }

private:
    struct Stop {};  // no std::exception, which a host's callback might catch

    // Stays where it is when its owner is moved.
    struct Host {
        explicit Host(const Options& options)
            : updater(ZoITrellanUpdater::createInstance(options)),
              inspector(ZoITrellanInspector::createInstance(*updater))
        {
            updater->setPhaseCallBack(&takePhase);
            updater->setFailureCallBack(&takeFailure);
            updater->setProgressCallBack(&takeProgress);
        }

        // The library calls back without saying for whom: it is for the one that is being called.
        static Host*& called()
        {
            static thread_local Host* host = nullptr;
            return host;
        }

        static void takePhase(unsigned number)
        {
            Host* const host = called();
            if (host == nullptr) {
                return;
            }
            if (number == 0xFFFFFFFF) {
                give(host->endOfPhases);
                return;
            }
            if (host->token != nullptr && host->token->isCancelled()) {
                throw Stop();
            }
            give(host->phase, number);
        }

        static void takeFailure(unsigned index)
        {
            if (Host* const host = called()) {
                give(host->failure, index);
            }
        }

        static void takeProgress(unsigned percent)
        {
            if (Host* const host = called()) {
                give(host->progress, percent);
            }
        }

        static void takeMessage(const std::string& text)
        {
            if (Host* const host = called()) {
                give(host->message, text);
            }
        }

        // A copy is called: a callback may set another in its place.
        template <typename... Arguments>
        static void give(const std::function<void(Arguments...)>& call,
                         const typename std::decay<Arguments>::type&... arguments)
        {
            if (call) {
                const std::function<void(Arguments...)> copy = call;
                copy(arguments...);
            }
        }

        std::function<void(unsigned)> phase;
        std::function<void()> endOfPhases;
        std::function<void(unsigned)> failure;
        std::function<void(unsigned)> progress;
        std::function<void(const std::string&)> message;
        const CancellationToken* token = nullptr;
        bool isReady = false;  // as the last apply() told
        std::unique_ptr<ZoITrellanUpdater> updater;
        std::unique_ptr<ZoITrellanInspector> inspector;  // gone before the updater
    };

    // For the time of a call of the library, in which a callback may call another updater.
    class Calling {
    public:
        explicit Calling(Host& host) : before(Host::called()) { Host::called() = &host; }
        ~Calling() { Host::called() = before; }
        Calling(const Calling&) = delete;
        Calling& operator=(const Calling&) = delete;

    private:
        Host* const before;
    };

    class Stopping {
    public:
        Stopping(Host& running, const CancellationToken& token) : stopped(running), before(running.token)
        {
            stopped.token = &token;
        }
        ~Stopping() { stopped.token = before; }
        Stopping(const Stopping&) = delete;
        Stopping& operator=(const Stopping&) = delete;

    private:
        Host& stopped;
        const CancellationToken* const before;
    };

    template <typename Record>
    static std::vector<Record> moved(Record* list, unsigned count)
    {
        const std::unique_ptr<Record[]> owned(list);
        return std::vector<Record>(std::make_move_iterator(list), std::make_move_iterator(list + count));
    }

    std::unique_ptr<Host> host;
};

}  // namespace ZoTrellanHost

#endif
