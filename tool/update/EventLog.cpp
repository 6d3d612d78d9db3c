// Makes the lines, and decides which of them must reach the medium at once.
#include "tool/update/EventLog.h"

#include <sys/random.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <new>
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

void EventLog::start(const std::string& archivePath, const std::string& archiveVersion,
                     const std::optional<std::string>& target, std::vector<UpdateElement> toUpdate)
{
    elements = std::move(toUpdate);
    for (const UpdateElement& element : elements) {
        phases.push_back(element.phase);
    }
    std::sort(phases.begin(), phases.end());
    started = true;
    if (!isOn()) {
        return;
    }
    write("start",
          {{"archive", {{"path", archivePath}, {"version", archiveVersion}}},
           {"target", target ? ordered_json(*target) : ordered_json()},
           {"elements", toBeUpdated(elements)}},
          true);
}

void EventLog::phase(unsigned number)
{
    currentPhase = number;
    lastPercent.reset();
    write("phase", {{"phase", number}}, true);
}

void EventLog::progress(unsigned percent)
{
    if (lastPercent == percent) {
        return;
    }
    lastPercent = percent;
    write("progress", {{"phase", currentPhase}, {"percent", percent}, {"overall", overall(percent)}}, false);
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
    write("failure", {{"element", index}, {"name", isKnown ? found->name : ""}}, true);
}

void EventLog::message(const std::string& text)
{
    write("message", {{"text", text}}, false);
}

void EventLog::signal(const char* name)
{
    append("signal", {{"signal", name}}, false);
}

void EventLog::result(int status, const ordered_json& outcomes)
{
    append("result", {{"status", status}, {"result", resultName(status)}, {"elements", outcomes}}, true);
}

std::string EventLog::takeFault()
{
    if (!file) {
        return "";
    }
    const std::lock_guard guard(mutex);
    return file->takeFault();
}

void EventLog::write(const char* event, ordered_json&& members, bool toMedium)
{
    append(event, std::move(members), toMedium);
    if (const std::string fault = takeFault(); !fault.empty()) {
        say(fault);
    }
}

void EventLog::append(const char* event, ordered_json&& members, bool toMedium)
{
    if (!file || !started) {
        return;
    }
    try {
        const std::string line = lineOf(event, std::move(members));
        const std::lock_guard guard(mutex);
        file->append(line, toMedium);
    } catch (const std::bad_alloc&) {
        const std::lock_guard guard(mutex);
        file->lose(ENOMEM);
    }
}

std::string EventLog::lineOf(const char* event, ordered_json&& members) const
{
    const auto now = std::chrono::system_clock::now();
    ordered_json line = {{"time", utcText(now)}, {"run", run}, {"event", event}};
    line.update(members);
    return line.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace TrellanTool
