#include "tool/completion/TargetCandidates.h"

#include <stdlib.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <unordered_set>

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

// What has a control character cannot be typed, and would look like something else in a list.
bool isPlain(const std::string& text)
{
    return std::none_of(text.begin(), text.end(), [](char letter) {
        const auto byte = static_cast<unsigned char>(letter);
        return byte < 0x20 || byte == 0x7f;
    });
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
