#include "inspection/Check.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/QuotedText.h"

using namespace ZoNTrellanInspector;
using namespace ZoNUpdateBase;

namespace ZoNUpdateInspection {

std::string pointerTo(std::uint32_t entry, std::int32_t board)
{
    const std::string pointer = "/files/" + std::to_string(entry);
    return board < 0 ? pointer : pointer + "/boards/" + std::to_string(board);
}

std::string nameInFindings(const ZoNUpdateArchive::ZoSUpdateFile& file)
{
    return shortName({file.name.c_str(), file.name.length()});
}

std::string withoutHeading(std::string_view message)
{
    constexpr std::string_view heading = "ERROR: ";
    message.remove_prefix(message.starts_with(heading) ? heading.size() : 0);
    std::string line;
    while (!message.empty()) {
        const std::size_t end = std::min(message.find('\n'), message.size());
        line.append(line.empty() ? "" : " ").append(message.substr(0, end));
        message.remove_prefix(std::min(message.find_first_not_of("\n ", end), message.size()));
    }
    return line;
}

Check::Check(const ZoCUpdateArchive& archive, Files files)
    : archive(archive), files(std::move(files)), forms(std::make_shared<ZoNUpdateBase::FindingForms>())
{
}

ZoTFinding& Check::report(const char* rule, Severity severity, const Place& place, std::string message)
{
    ZoTFinding& finding = report(rule, severity, std::move(message));
    finding.entry = static_cast<std::int32_t>(place.file.entry);
    finding.board = place.board;
    finding.name = nameInFindings(place.file);
    finding.isInDescription = true;
    finding.pointer = pointerTo(place.file.entry, place.board);
    if (!place.member.empty()) {
        finding.pointer += "/" + place.member;
    }
    return finding;
}

ZoTFinding& Check::report(const char* rule, Severity severity, std::string message)
{
    keepPresent();
    ZoTFinding& finding = present.emplace();
    finding.rule = rule;
    finding.severity = severity;
    finding.entry = -1;
    finding.board = -1;
    finding.message = std::move(message);
    return finding;
}

void Check::keepPresent()
{
    if (!present) {
        return;
    }
    if (runs.empty() || !runs.back().isInOrderWith(*present)) {
        runs.emplace_back(forms);
    }
    runs.back().add(*present);
    present.reset();
}

Check Check::further(Files others) const
{
    Check check(archive, std::move(others));
    check.forms = forms;
    return check;
}

void Check::add(Check other)
{
    keepPresent();
    other.keepPresent();
    std::move(other.runs.begin(), other.runs.end(), std::back_inserter(runs));
}

ZoNUpdateBase::FindingList Check::takeFindings()
{
    keepPresent();
    return runs.size() == 1 ? std::move(runs.front()) : ZoNUpdateBase::FindingList::merge(std::exchange(runs, {}));
}

}  // namespace ZoNUpdateInspection
