// Each part of the script is checked once, with the target file, and read again when its call comes.
#include "simulation/target/Script.h"

#include <charconv>

#include "simulation/libZoInventoryTree/AddressText.h"

namespace TrellanSimulation {

namespace {

// The errors in the member `name` of `object`; none when it has no such member.
ErrorEntries readErrors(const Json& object, std::string_view name, const Place& place)
{
    const auto errors = object.find(name);
    return errors ? ErrorEntries(*errors, Place(place, name)) : ErrorEntries();
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

// The list that is the member `name` of `object`; none when it has no such member.
template <class Call>
ScriptedCalls<Call> callsOf(const Json& object, std::string_view name)
{
    const auto list = object.find(name);
    return list ? ScriptedCalls<Call>(*list) : ScriptedCalls<Call>();
}

template <class Call>
ScriptedCalls<Call> readCalls(const Json& object, std::string_view name, const Place& place)
{
    const Place listPlace(place, name);
    if (const auto list = object.find(name)) {
        requireArray(*list, listPlace);
        for (std::size_t position = 0; position < list->size(); ++position) {
            Call((*list)[position], Place(listPlace, position));
        }
    }
    return callsOf<Call>(object, name);
}

MemberIndex readElements(const Json& source, const Place& place)
{
    requireObject(source, place);
    source.forEachMember([&](std::string_view key, const Json& element) {
        const Place keyPlace(place, key);
        if (!isElementKey(key)) {
            throw DocumentFault(keyPlace, "not BOARD#ID");
        }
        requireMembers(element, {"start", "polls", "finish"}, keyPlace);
        readCalls<ScriptedCall>(element, "start", keyPlace);
        readCalls<ScriptedPoll>(element, "polls", keyPlace);
        readCalls<ScriptedFinish>(element, "finish", keyPlace);
    });
    return MemberIndex(source);
}

}  // namespace

ScriptedCall::ScriptedCall(const Json& source, const Place& place, std::initializer_list<std::string_view> known)
{
    requireMembers(source, known, place);
    errors = readErrors(source, "errors", place);
}

ScriptedCall::ScriptedCall(const Json& source, const Place& place) : ScriptedCall(source, place, {"errors"}) {}

ScriptedScan::ScriptedScan(const Json& source, const Place& place) : ScriptedCall(source, place, {"result", "errors"})
{
    if (const auto value = source.find("result")) {
        result = getInt(*value, Place(place, "result"));
    }
}

ScriptedPoll::ScriptedPoll(const Json& source, const Place& place)
    : ScriptedCall(source, place, {"status", "done", "total", "errors"})
{
    readNumber(source, "status", place, status);
    readNumber(source, "done", place, done);
    readNumber(source, "total", place, total);
}

ScriptedFinish::ScriptedFinish(const Json& source, const Place& place)
    : ScriptedCall(source, place, {"errors", "results"}), results(readErrors(source, "results", place))
{
}

Script::Script(const Json& source, const Place& place)
{
    requireMembers(source, {"scan", "values", "lock", "updateFinish", "unlock", "elements"}, place);
    scan = readCalls<ScriptedScan>(source, "scan", place);
    lock = readCalls<ScriptedCall>(source, "lock", place);
    updateFinish = readCalls<ScriptedCall>(source, "updateFinish", place);
    unlock = readCalls<ScriptedCall>(source, "unlock", place);
    if (const auto faults = source.find("values")) {
        values = std::make_shared<ValueFaults>(*faults, Place(place, "values"));
    }
    if (const auto ofElements = source.find("elements")) {
        elements = readElements(*ofElements, Place(place, "elements"));
    }
    document = JsonDocument(source);
}

ElementScript Script::element(std::string_view key) const
{
    const auto found = elements.find(key);
    return found ? ElementScript{callsOf<ScriptedCall>(*found, "start"), callsOf<ScriptedPoll>(*found, "polls"),
                                 callsOf<ScriptedFinish>(*found, "finish")}
                 : ElementScript();
}

std::string elementKey(const ZoCInventoryAddress& board, unsigned id)
{
    return itemAddressText(board) + '#' + std::to_string(id);
}

}  // namespace TrellanSimulation
