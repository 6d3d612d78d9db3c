// Reading a file of events.
#include "tool/update/History.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <limits>
#include <string_view>
#include <system_error>
#include <unordered_map>

#include "json/HasNul.h"

namespace TrellanTool {

namespace {

using TrellanJson::hasNul;
using TrellanJson::json;  // whose objects stay fast however many members a line has

constexpr std::string_view results[] = {"success", "failed", "interrupted", "stalled", "refused"};
constexpr std::size_t mostErrorMembers = 32;
constexpr unsigned deepestErrorMember = 8;  // a value's copy and its text take room on the stack for each level

// What a line lacks to be an event.
class NoEvent {};

const json& member(const json& object, const char* name)
{
    if (!object.is_object() || !object.contains(name)) {
        throw NoEvent();
    }
    return object.at(name);
}

const std::string& text(const json& object, const char* name)
{
    const json& value = member(object, name);
    if (!value.is_string()) {
        throw NoEvent();
    }
    return value.get_ref<const std::string&>();
}

std::uint32_t number(const json& object, const char* name)
{
    const json& value = member(object, name);
    if (!value.is_number_unsigned() || value.get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
        throw NoEvent();
    }
    return value.get<std::uint32_t>();
}

const json& list(const json& object, const char* name)
{
    const json& value = member(object, name);
    if (!value.is_array()) {
        throw NoEvent();
    }
    return value;
}

bool isDeeperThan(unsigned levels, const json& value)
{
    return value.is_structured() && (levels == 0 || std::any_of(value.begin(), value.end(), [levels](const json& part) {
                                         return isDeeperThan(levels - 1, part);
                                     }));
}

TrellanJson::ordered_json errorOf(const json& error)
{
    if (!member(error, "code").is_null()) {
        number(error, "code");
    }
    text(error, "text");
    if (error.size() > mostErrorMembers || isDeeperThan(deepestErrorMember, error)) {
        throw NoEvent();
    }
    return error;
}

HistoryElement elementOf(const json& element, bool withOutcome)
{
    HistoryElement result;
    result.index = number(element, "index");
    result.name = text(element, "name");
    result.from = text(element, "from");
    result.to = text(element, "to");
    if (withOutcome) {
        result.state = text(element, "state");
        for (const json& error : list(element, "errors")) {
            result.errors.push_back(errorOf(error));
        }
    }
    return result;
}

std::vector<HistoryElement> elementsOf(const json& event, bool withOutcome)
{
    std::vector<HistoryElement> elements;
    for (const json& element : list(event, "elements")) {
        elements.push_back(elementOf(element, withOutcome));
    }
    return elements;
}

std::string resultOf(const json& event)
{
    const std::string& result = text(event, "result");
    if (std::find(std::begin(results), std::end(results), result) == std::end(results)) {
        throw NoEvent();
    }
    return result;
}

// What the line says, kept out of the run until all of it is known to be sound.
void take(const json& line, HistoryRun& run)
{
    const std::string& event = text(line, "event");
    if (event == "start") {
        const json& archive = member(line, "archive");
        HistoryArchive known = {text(archive, "path"), text(archive, "version")};
        run.elements = elementsOf(line, false);
        run.archive = std::move(known);
    } else if (event == "phase") {
        run.phase = number(line, "phase");
    } else if (event == "result") {
        std::string result = resultOf(line);
        run.elements = elementsOf(line, true);
        run.result = std::move(result);
        run.hasResult = true;
    }
}

class Reader {
public:
    void takeLine(const std::string& line, unsigned long long lineNumber)
    {
        const json event = hasNul(line) ? json(json::value_t::discarded) : json::parse(line, nullptr, false);
        if (event.is_discarded()) {
            complain(lineNumber, Skipped::torn);
            return;
        }
        try {
            takeEvent(event);
        } catch (const NoEvent&) {
            complain(lineNumber, Skipped::noEvent);
        }
    }

    History takeHistory()
    {
        for (const SkippedLines& lines : skipped) {
            history.complaints.push_back(complaintOf(lines));
        }
        return std::move(history);
    }

private:
    enum class Skipped { torn, noEvent };

    // Lines in a row. A file that is none of events at all is one complaint, and not one for each of its lines.
    struct SkippedLines {
        unsigned long long first, last;
        Skipped reason;
    };

    void complain(unsigned long long lineNumber, Skipped reason)
    {
        if (!skipped.empty() && skipped.back().last + 1 == lineNumber && skipped.back().reason == reason) {
            skipped.back().last = lineNumber;
        } else {
            skipped.push_back({lineNumber, lineNumber, reason});
        }
    }

    static std::string complaintOf(const SkippedLines& lines)
    {
        const bool isTorn = lines.reason == Skipped::torn;
        if (lines.first == lines.last) {
            return "line " + std::to_string(lines.first) + " is " + (isTorn ? "torn" : "no event of an update") +
                   ", and is skipped";
        }
        return "lines " + std::to_string(lines.first) + " to " + std::to_string(lines.last) + " are " +
               (isTorn ? "torn" : "no events of an update") + ", and are skipped";
    }

    void takeEvent(const json& line)
    {
        const std::string& name = text(line, "run");
        const std::string& time = text(line, "time");
        const auto known = positions.find(name);
        if (known != positions.end()) {
            take(line, history.runs[known->second]);
            return;
        }
        HistoryRun run;
        run.run = name;
        run.time = time;
        take(line, run);
        positions.emplace(name, history.runs.size());
        history.runs.push_back(std::move(run));
    }

    History history;
    std::vector<SkippedLines> skipped;
    std::unordered_map<std::string, std::size_t> positions;
};

}  // namespace

History readHistory(const std::string& path)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    Reader reader;
    std::string line;
    for (unsigned long long lineNumber = 1; std::getline(file, line); ++lineNumber) {
        if (!line.empty()) {
            reader.takeLine(line, lineNumber);
        }
    }
    if (!file.eof()) {
        throw HistoryError(path + " cannot be read: " + std::generic_category().message(errno));
    }
    return reader.takeHistory();
}

}  // namespace TrellanTool
