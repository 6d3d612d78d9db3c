// The library finds what concerns the entries and their files. What concerns the text, which it does not keep, is found
// here: a syntax error, members that stand twice, and members that the format does not have.
#include "tool/documents/ArchiveFindings.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "json/Shortened.h"
#include "tool/Nearest.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTDescription;
using ZoNTrellanInspector::ZoTFinding;

// The number behind `prefix` at the beginning of `rest`, which is taken away with it.
std::optional<std::int32_t> takeNumber(std::string_view& rest, std::string_view prefix)
{
    std::int32_t number = 0;
    if (!rest.starts_with(prefix)) {
        return std::nullopt;
    }
    const char* const end = rest.data() + rest.size();
    const auto [stop, error] = std::from_chars(rest.data() + prefix.size(), end, number);
    if (error != std::errc() || number < 0 || (stop != end && *stop != '/')) {
        return std::nullopt;
    }
    rest.remove_prefix(static_cast<std::size_t>(stop - rest.data()));
    return number;
}

using ZoNTrellanInspector::ZoTDescriptionObject;

// The kind of the object to which the pointer leads, which is one that the format has.
ZoTDescriptionObject kindOf(std::string_view pointer)
{
    if (!takeNumber(pointer, "/files/")) {
        return pointer.empty() ? ZoTDescriptionObject::WHOLE : ZoTDescriptionObject::INFO;
    }
    return pointer.empty() ? ZoTDescriptionObject::ENTRY : ZoTDescriptionObject::BOARD;
}

}  // namespace

// What of the library's findings decides about unknown members.
struct ArchiveFindings::Passed {
    std::vector<std::int32_t> entries;  // passed over: they may have what a newer format has
    std::vector<std::string> refused;   // unknown members that need no further word; sorted
};

ArchiveFindings::ArchiveFindings(ZoITrellanInspector& inspector, ZoTDescription read, const std::string& description)
    : inspector(inspector),
      description(description),
      isRead(read == ZoTDescription::READ),
      foundByLibrary(inspector.getFindingCount()),
      places(description)
{
    readKnown();
    if (isRead) {
        unknown = findUnknownMembers(description,
                                     [this](Object object, std::string_view key) { return isKnown(object, key); });
    }
    const Passed passed = lookThrough();
    JsonPlaces found = findPlaces(inspector, description, order);
    duplicates = std::move(found.duplicates);
    fault = std::move(found.fault);
    addOthers();
    addUnknown(passed);
    addDuplicates();
    if (unknown.size() + duplicates.size() != 0) {
        names = findEntryNames(description);
    }
}

std::size_t ArchiveFindings::count(Severity severity) const
{
    return counts[static_cast<std::size_t>(severity)];
}

void ArchiveFindings::readKnown()
{
    for (const auto object : {Object::WHOLE, Object::INFO, Object::ENTRY, Object::BOARD}) {
        for (unsigned i = 0; i < inspector.getMemberCount(object); ++i) {
            known[static_cast<std::size_t>(object)].push_back(inspector.getMember(object, i));
        }
    }
}

bool ArchiveFindings::isKnown(Object object, std::string_view key) const
{
    const std::vector<std::string>& keys = known[static_cast<std::size_t>(object)];
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

// Counts what the library has found, and notes what else is asked of it.
ArchiveFindings::Passed ArchiveFindings::lookThrough()
{
    Passed passed;
    for (std::size_t i = 0; i < foundByLibrary; ++i) {
        const ZoTFinding& found = inspector.getFinding(static_cast<unsigned>(i));
        ++counts[static_cast<std::size_t>(found.severity)];
        if (found.rule == "unsupported-entry") {
            passed.entries.push_back(found.entry);
        } else if (found.rule == "syntax" && !syntax) {
            syntax = i;
        } else if (found.rule == "structure" && found.entry >= 0 && unknown.size() != 0) {
            const std::string_view member =
                std::string_view(found.pointer).substr(pointerLength(found.entry, found.board));
            if (!member.empty() && !isKnown(found.board < 0 ? Object::ENTRY : Object::BOARD, member.substr(1))) {
                passed.refused.push_back(found.pointer);
            }
        }
    }
    std::sort(passed.refused.begin(), passed.refused.end());
    return passed;
}

void ArchiveFindings::add(std::size_t number, Severity severity, std::size_t offset)
{
    order.add(number, offset);
    ++counts[static_cast<std::size_t>(severity)];
}

void ArchiveFindings::addUnknown(const Passed& passed)
{
    for (std::size_t i = 0; i < unknown.size(); ++i) {
        std::string_view object = unknown.object(i);
        const std::optional<std::int32_t> entry = takeNumber(object, "/files/");
        if (entry && std::binary_search(passed.entries.begin(), passed.entries.end(), *entry)) {
            continue;
        }
        if (!passed.refused.empty() &&
            std::binary_search(passed.refused.begin(), passed.refused.end(),
                               pointerToMember(unknown.object(i), stringAt(description, unknown.offset(i))))) {
            continue;
        }
        add(foundByLibrary + i, Severity::WARNING, unknown.offset(i));
    }
}

void ArchiveFindings::addDuplicates()
{
    for (std::size_t i = 0; i < duplicates.size(); ++i) {
        add(foundByLibrary + unknown.size() + i, Severity::ERROR, duplicates.offset(i));
    }
}

// What the library has found that is about nothing in the description. Where and why the text is no JSON is told with
// what it has found of it, or else by itself.
void ArchiveFindings::addOthers()
{
    if (!fault) {
        syntax.reset();
    }
    for (std::size_t i = order.size(); i < foundByLibrary; ++i) {
        order.add(i, i == syntax ? std::optional(fault->offset) : std::nullopt);
    }
    if (fault && !syntax) {
        syntax = foundByLibrary + unknown.size() + duplicates.size();
        add(*syntax, Severity::ERROR, fault->offset);
    }
}

// Notes which entry and board object the object is or belongs to.
void ArchiveFindings::noteEntry(Finding& finding, std::string_view object) const
{
    if (!names) {
        return;  // it is in no list that counts
    }
    finding.file = takeNumber(object, "/files/");
    if (!finding.file) {
        return;
    }
    finding.board = takeNumber(object, "/boards/");
    const auto name = std::lower_bound(names->begin(), names->end(), *finding.file,
                                       [](const EntryName& each, std::int32_t entry) { return each.entry < entry; });
    if (name != names->end() && name->entry == *finding.file) {
        finding.name = TrellanJson::shortened(stringAt(description, name->offset), TrellanJson::longestName);
    }
}

Finding ArchiveFindings::memberFinding(std::size_t number) const
{
    const bool isUnknown = number < unknown.size();
    const FoundMembers& members = isUnknown ? unknown : duplicates;
    const std::size_t position = isUnknown ? number : number - unknown.size();
    const std::string& object = members.object(position);
    const std::string key = stringAt(description, members.offset(position));
    Finding finding{};
    finding.pointer = pointerToMember(object, key);
    noteEntry(finding, *finding.pointer);
    if (isUnknown) {
        finding.rule = "unknown-key";
        finding.severity = Severity::WARNING;
        finding.message = "the format has no \"" + TrellanJson::shortened(key) + "\" here; the nearest is \"" +
                          nearest(key, known[static_cast<std::size_t>(kindOf(object))]) + "\"";
    } else {
        finding.rule = "duplicate-key";
        finding.severity = Severity::ERROR;
        finding.message = "the member stands in its object already, and the last one counts: take one away";
    }
    return finding;
}

Finding ArchiveFindings::at(std::size_t position)
{
    const auto [number, offset] = order.at(position);
    Finding finding{};
    if (number < foundByLibrary) {
        finding = findingAt(inspector, number);
    } else if (number == syntax) {
        finding.rule = "syntax";
        finding.severity = Severity::ERROR;
        finding.message = "this is no JSON.";
    } else {
        finding = memberFinding(number - foundByLibrary);
    }
    if (number == syntax) {
        finding.message += " (" + fault->reason + ")";
    }
    if (offset) {
        finding.place = places.at(*offset);
    }
    return finding;
}

}  // namespace TrellanTool
