// The script's lists as they are read from the target file, and the next entry of each.
#include "simulation/target/Script.h"

#include <charconv>
#include <optional>

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

// Sets `number` to the member `name` of `object`; leaves it as it is when there is none.
template <class Number>
void readNumber(const Json& object, std::string_view name, const Place& place, Number& number,
                std::uint64_t highest = std::numeric_limits<Number>::max())
{
    if (const auto member = object.find(name)) {
        number = static_cast<Number>(getNumber(*member, Place(place, name), 0, highest));
    }
}

ZoSErrorRecord readError(const Json& source, const Place& place)
{
    requireMembers(source, {"code", "text", "originNode", "timeStamp", "mainModule", "subModule", "function", "line"},
                   place);
    ZoSErrorRecord error;
    getMember(source, "code", place);
    readNumber(source, "code", place, error.code);
    error.text = getText(getMember(source, "text", place), Place(place, "text"));
    readNumber(source, "originNode", place, error.originNode);
    readNumber(source, "timeStamp", place, error.timeStamp);
    readNumber(source, "mainModule", place, error.mainModule);
    readNumber(source, "subModule", place, error.subModule);
    readNumber(source, "line", place, error.line);
    if (const auto function = source.find("function")) {
        error.function = getText(*function, Place(place, "function"));
    }
    return error;
}

// The array `source`, each element read by `readEntry`.
template <class Entry>
std::vector<Entry> readEntries(const Json& source, const Place& place, Entry (*readEntry)(const Json&, const Place&))
{
    requireArray(source, place);
    std::vector<Entry> entries;
    for (std::size_t position = 0; position < source.size(); ++position) {
        entries.push_back(readEntry(source[position], Place(place, position)));
    }
    return entries;
}

// The array that is the member `name` of `object`; empty when there is none.
template <class Entry>
std::vector<Entry> readList(const Json& object, std::string_view name, const Place& place,
                            Entry (*readEntry)(const Json&, const Place&))
{
    const auto list = object.find(name);
    return !list ? std::vector<Entry>() : readEntries(*list, Place(place, name), readEntry);
}

ScriptedCall readCall(const Json& source, const Place& place)
{
    requireMembers(source, {"errors"}, place);
    return {readList(source, "errors", place, readError)};
}

ScriptedScan readScan(const Json& source, const Place& place)
{
    requireMembers(source, {"result", "errors"}, place);
    ScriptedScan scan;
    scan.errors = readList(source, "errors", place, readError);
    if (const auto result = source.find("result")) {
        scan.result = getInt(*result, Place(place, "result"));
    }
    return scan;
}

ScriptedPoll readPoll(const Json& source, const Place& place)
{
    requireMembers(source, {"status", "done", "total", "errors"}, place);
    ScriptedPoll poll;
    poll.errors = readList(source, "errors", place, readError);
    readNumber(source, "status", place, poll.status);
    readNumber(source, "done", place, poll.done);
    readNumber(source, "total", place, poll.total);
    return poll;
}

ScriptedFinish readFinish(const Json& source, const Place& place)
{
    requireMembers(source, {"errors", "results"}, place);
    ScriptedFinish finish;
    finish.errors = readList(source, "errors", place, readError);
    finish.results = readList(source, "results", place, readError);
    return finish;
}

bool isElementKey(std::string_view key)
{
    const auto mark = key.find('#');
    if (mark == std::string_view::npos || !parseItemAddress(key.substr(0, mark))) {
        return false;
    }
    const std::string_view digits = key.substr(mark + 1);
    unsigned id = 0;
    return std::from_chars(digits.data(), digits.data() + digits.size(), id).ec == std::errc() &&
           std::to_string(id) == digits;
}

bool isValueKey(std::string_view key)
{
    const auto mark = key.find(':');
    return mark != std::string_view::npos && parseItemAddress(key.substr(0, mark)) &&
           parseParameterAddress(key.substr(mark + 1));
}

std::shared_ptr<const ValueFaults> readValues(const Json& source, const Place& place)
{
    requireObject(source, place);
    auto values = std::make_shared<ValueFaults>();
    source.forEachMember([&](std::string_view key, const Json& errors) {
        const Place keyPlace(place, key);
        if (!isValueKey(key)) {
            throw DocumentFault(keyPlace, "not ITEM:PARAMETER");
        }
        values->emplace(key, readEntries(errors, keyPlace, readError));
    });
    return values;
}

std::unordered_map<std::string, ElementScript> readElements(const Json& source, const Place& place)
{
    requireObject(source, place);
    std::unordered_map<std::string, ElementScript> elements;
    source.forEachMember([&](std::string_view key, const Json& element) {
        const Place keyPlace(place, key);
        if (!isElementKey(key)) {
            throw DocumentFault(keyPlace, "not BOARD#ID");
        }
        requireMembers(element, {"start", "polls", "finish"}, keyPlace);
        ElementScript& script = elements[std::string(key)];
        script.start = readList(element, "start", keyPlace, readCall);
        script.polls = readList(element, "polls", keyPlace, readPoll);
        script.finish = readList(element, "finish", keyPlace, readFinish);
    });
    return elements;
}

}  // namespace

const ElementScript& Script::element(const std::string& key) const
{
    static const ElementScript none;
    const auto found = elements.find(key);
    return found == elements.end() ? none : found->second;
}

std::string elementKey(const ZoCInventoryAddress& board, unsigned id)
{
    return itemAddressText(board) + '#' + std::to_string(id);
}

Script readScript(const Json& source, const Place& place)
{
    requireMembers(source, {"scan", "values", "lock", "updateFinish", "unlock", "elements"}, place);
    Script script;
    script.scan = readList(source, "scan", place, readScan);
    script.lock = readList(source, "lock", place, readCall);
    script.updateFinish = readList(source, "updateFinish", place, readCall);
    script.unlock = readList(source, "unlock", place, readCall);
    if (const auto values = source.find("values")) {
        script.values = readValues(*values, Place(place, "values"));
    }
    if (const auto elements = source.find("elements")) {
        script.elements = readElements(*elements, Place(place, "elements"));
    }
    return script;
}

}  // namespace TrellanSimulation
