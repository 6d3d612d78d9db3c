#include "tool/completion/TargetCandidates.h"

#include <stdlib.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <ostream>
#include <string_view>
#include <unordered_set>

#include "json/TerminalText.h"
#include "tool/ExitStatus.h"
#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Option.h"
#include "tool/commands/LibrarySession.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTElement;
using ZoNTrellanUpdater::ZoTUpdateElement;

Candidate candidateOf(Value kind, const ZoTUpdateElement& shown, const ZoTElement& element)
{
    switch (kind) {
        case Value::BOARD_TYPES:
            return {shown.boardType, shown.boardName};
        case Value::SERIAL_NUMBERS:
            return element.displayedSerialNumber.empty()
                       ? Candidate{}
                       : Candidate{std::to_string(shown.serialNumber), shown.boardName};
        case Value::ELEMENT_NAMES:
            return {element.name, shown.displayType};
        default:
            return {std::to_string(element.index), shown.displayName};
    }
}

// In UTF-8: the bytes before the last one, and what that may be. U+061C, U+200E and U+200F, U+2028 to U+202E, and
// U+2066 to U+2069, of which most turn the text around that follows.
struct Range {
    std::string_view begin;
    unsigned char from, to;
};

constexpr Range turningRanges[] = {
    {"\xd8", 0x9c, 0x9c}, {"\xe2\x80", 0x8e, 0x8f}, {"\xe2\x80", 0xa8, 0xae}, {"\xe2\x81", 0xa6, 0xa9}};

bool beginsWith(std::string_view text, const Range& range)
{
    if (!text.starts_with(range.begin) || text.size() == range.begin.size()) {
        return false;
    }
    const auto last = static_cast<unsigned char>(text[range.begin.size()]);
    return last >= range.from && last <= range.to;
}

bool turnsText(std::string_view text)
{
    for (; !text.empty(); text.remove_prefix(1)) {
        if (std::any_of(std::begin(turningRanges), std::end(turningRanges),
                        [&](const Range& range) { return beginsWith(text, range); })) {
            return true;
        }
    }
    return false;
}

// What has a control character cannot be typed, and would look like something else in a list.
bool isPlain(const std::string& text)
{
    return text.find_first_of("\t\n\r") == std::string::npos && TrellanJson::withControlCharactersShown(text) == text &&
           !turnsText(text);
}

}  // namespace

std::vector<Candidate> candidatesOnTarget(Value kind, const Arguments& typed)
{
    std::vector<Candidate> candidates;
    if (!typed.targetFile) {
        return candidates;
    }
    Arguments reading;
    reading.command = &commandNamed("scan");
    reading.targetFile = typed.targetFile;
    reading.options = typed.options;
    reading.options.command = reading.command->code;
    ::unsetenv("TRELLAN_TRACE");
    std::ostream nowhere(nullptr);
    LibrarySession session(reading, nowhere);
    if (session.apply(nowhere) != SUCCESS) {
        return candidates;
    }
    ZoTUpdateElement* list = nullptr;
    unsigned count = 0;
    session.updater().getUpdateElementList(list, count);
    const std::unique_ptr<ZoTUpdateElement[]> owner(list);
    std::unordered_set<std::string> words;
    for (unsigned i = 0; i < count; ++i) {
        Candidate candidate = candidateOf(kind, list[i], session.inspector().getElement(i));
        if (!candidate.word.empty() && isPlain(candidate.word) && words.insert(candidate.word).second) {
            candidate.meaning = isPlain(candidate.meaning) ? candidate.meaning : "";
            candidates.push_back(std::move(candidate));
        }
    }
    return candidates;
}

}  // namespace TrellanTool
