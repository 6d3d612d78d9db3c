// Makes the lines, and decides which of them must reach the medium at once.
#include "tool/update/EventLog.h"

#include <sys/random.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <utility>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/update/UtcTime.h"

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

// Time, process and a random number: also processes of other machines that write to the same file differ.
std::string newRun()
{
    std::uint32_t random = 0;
    if (::getrandom(&random, sizeof random, GRND_NONBLOCK) < 0) {
        random = 0;  // time and process must do
    }
    const auto time = std::chrono::system_clock::now().time_since_epoch();
    const auto microseconds = std::chrono::duration_cast<std::chrono::microseconds>(time).count();
    char text[64];
    std::snprintf(text, sizeof text, "%" PRIx64 "-%x-%08" PRIx32, static_cast<std::uint64_t>(microseconds),
                  static_cast<unsigned>(::getpid()), random);
    return text;
}

ordered_json toBeUpdated(const std::vector<UpdateElement>& elements)
{
    ordered_json list = ordered_json::array();
    for (const UpdateElement& element : elements) {
        list.push_back({{"index", element.index}, {"name", element.name}, {"from", element.from}, {"to", element.to}});
    }
    return list;
}

const char* resultName(int status)
{
    switch (status) {
        case SUCCESS:
            return "success";
        case FAILURE:
            return "failed";
        case STALLED:
            return "stalled";
        default:
            return status > ENDED_BY_SIGNAL ? "interrupted" : "refused";
    }
}

}  // namespace

EventLog::EventLog(const std::optional<std::string>& path, Say say) : say(std::move(say)), run(newRun())
{
    if (path) {
        file.emplace(*path);
    }
}

void EventLog::prepareStart(const std::string& path, const std::string& version,
                            const std::optional<std::string>& targetFile, std::vector<UpdateElement> toUpdate)
{
    archivePath = path;
    archiveVersion = version;
    target = targetFile;
    elements = std::move(toUpdate);
    for (const UpdateElement& element : elements) {
        phases.push_back(element.phase);
    }
    std::sort(phases.begin(), phases.end());
}

void EventLog::start()
{
    begin();
    sayFault();
}

void EventLog::begin() noexcept
{
    const std::lock_guard guard(startMutex);
    if (started) {
        return;
    }
    appendLine(
        "start",
        [&]() -> ordered_json {
            return {{"archive", {{"path", archivePath}, {"version", archiveVersion}}},
                    {"target", target ? ordered_json(*target) : ordered_json()},
                    {"elements", toBeUpdated(elements)}};
        },
        true);
    started = true;
}

void EventLog::phase(unsigned number)
{
    currentPhase = number;
    lastPercent.reset();
    write(
        "phase",
        [&]() -> ordered_json {
            return {{"phase", number}};
        },
        true);
}

void EventLog::progress(unsigned percent)
{
    if (lastPercent == percent) {
        return;
    }
    lastPercent = percent;
    const auto members = [&]() -> ordered_json {
        return {{"phase", currentPhase}, {"percent", percent}, {"overall", overall(percent)}};
    };
    write("progress", members, false);
}

// Of all elements to update, in percent.
unsigned EventLog::overall(unsigned percent) const
{
    if (phases.empty()) {
        return percent;
    }
    const auto [begin, end] = std::equal_range(phases.begin(), phases.end(), currentPhase);
    const auto before = static_cast<std::size_t>(begin - phases.begin());
    const auto current = static_cast<std::size_t>(end - begin);
    return static_cast<unsigned>((before * 100 + current * percent) / phases.size());
}

void EventLog::failure(std::uint32_t index)
{
    const auto found =
        std::lower_bound(elements.begin(), elements.end(), index,
                         [](const UpdateElement& element, std::uint32_t wanted) { return element.index < wanted; });
    const bool isKnown = found != elements.end() && found->index == index;
    const auto members = [&]() -> ordered_json { return {{"element", index}, {"name", isKnown ? found->name : ""}}; };
    write("failure", members, true);
}

void EventLog::message(const std::string& text)
{
    write(
        "message",
        [&]() -> ordered_json {
            return {{"text", text}};
        },
        false);
}

void EventLog::signal(const char* name) noexcept
{
    append(
        "signal",
        [&]() -> ordered_json {
            return {{"signal", name}};
        },
        false);
}

void EventLog::result(int status, const ordered_json& outcomes) noexcept
{
    append(
        "result",
        [&]() -> ordered_json {
            return {{"status", status}, {"result", resultName(status)}, {"elements", outcomes}};
        },
        true);
}

std::string EventLog::takeFault()
{
    if (!file) {
        return "";
    }
    const std::lock_guard guard(mutex);
    return file->takeFault();
}

template <class Members>
void EventLog::write(const char* event, Members members, bool toMedium)
{
    append(event, members, toMedium);
    sayFault();
}

void EventLog::sayFault()
{
    if (const std::string fault = takeFault(); !fault.empty()) {
        say(fault);
    }
}

template <class Members>
void EventLog::append(const char* event, Members members, bool toMedium) noexcept
{
    if (started) {
        appendLine(event, members, toMedium);
    }
}

template <class Members>
void EventLog::appendLine(const char* event, Members members, bool toMedium) noexcept
{
    if (!file) {
        return;
    }
    try {
        const std::string line = lineOf(event, members());
        const std::lock_guard guard(mutex);
        file->append(line, toMedium);
    } catch (...) {  // memory is short
        const std::lock_guard guard(mutex);
        file->lose(ENOMEM);
    }
}

std::string EventLog::lineOf(const char* event, const ordered_json& members) const
{
    const auto now = std::chrono::system_clock::now();
    ordered_json line = {{"time", utcText(now)}, {"run", run}, {"event", event}};
    line.update(members);
    return line.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace TrellanTool
