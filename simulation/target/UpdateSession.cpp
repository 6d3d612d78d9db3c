// How far each update is by the clock, and when the changed target file is written.
#include "simulation/target/UpdateSession.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace TrellanSimulation {

namespace {

__extension__ using WideNumber = unsigned __int128;

constexpr std::uint64_t microsecondsPerSecond = 1'000'000;

std::uint64_t transferred(std::uint64_t microseconds, std::uint64_t bytesPerSecond, std::uint64_t size)
{
    const WideNumber bytes = WideNumber{microseconds} * bytesPerSecond / microsecondsPerSecond;
    return bytes < size ? static_cast<std::uint64_t>(bytes) : size;
}

unsigned narrow(std::uint64_t number)
{
    return static_cast<unsigned>(std::min<std::uint64_t>(number, std::numeric_limits<unsigned>::max()));
}

}  // namespace

UpdateSession::UpdateSession(const std::filesystem::path& path, std::unique_ptr<TargetFile> file,
                             std::unique_ptr<TargetLock> lock, unsigned handle)
    : lock(std::move(lock)), targetPath(path), target(std::move(file)), lockHandle(handle)
{
    if (target->clock() == ClockKind::real) {
        saving.emplace([this] { trySaving(); });
    }
}

void UpdateSession::start(const std::string& key, const UpdateContent& content)
{
    updates.insert_or_assign(key, Update{content, now(), false});
}

UpdateProgress UpdateSession::progress(const std::string& key) const
{
    const Update& update = updates.at(key);
    const std::uint64_t size = update.content.size;
    const std::uint64_t done =
        update.finished ? size : transferred(now() - update.startTime, target->bytesPerSecond(), size);
    return {done == size ? 2U : 1U, narrow(done), narrow(size)};
}

UpdateProgress UpdateSession::finishedProgress(const std::string& key) const
{
    const unsigned size = narrow(updates.at(key).content.size);
    return {2, size, size};
}

void UpdateSession::finish(const std::string& key)
{
    Update& update = updates.at(key);
    if (update.finished) {
        return;
    }
    update.finished = true;
    target->installElement(key, update.content);
}

// A sleep has nobody to tell of a fault; one that lasts is reported at the unlock.
void UpdateSession::trySaving()
{
    try {
        target->save();
    } catch (const std::runtime_error&) {
    }
}

}  // namespace TrellanSimulation
