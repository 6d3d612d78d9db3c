// The library finds what concerns the entries and their files. What concerns the text, which it does not keep, is found
// here: a syntax error, members that stand twice, and members that the format does not have.
#include "tool/documents/ArchiveFindings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

#include "json/Shortened.h"
#include "tool/Nearest.h"
#include "tool/documents/UnknownMembers.h"

namespace TrellanTool {

namespace {

using ZoNTrellanInspector::ZoTDescription;
using ZoNTrellanInspector::ZoTDescriptionObject;
using ZoNTrellanInspector::ZoTSeverity;

Finding finding(const char* rule, ZoTSeverity severity, std::string pointer, std::string message)
{
    return {rule,         severity,           std::nullopt, std::nullopt, "", std::move(pointer),
            std::nullopt, std::move(message), std::nullopt, nullptr};
}

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

// Notes which entries and board objects the pointers of the findings from `first` on are about. `description` is valid
// where `isRead`, and has its entries' names.
void noteEntries(std::vector<Finding>& findings, std::size_t first, const std::string& description, bool isRead)
{
    std::set<std::int32_t> entries;
    for (std::size_t i = first; i < findings.size(); ++i) {
        std::string_view rest = *findings[i].pointer;
        findings[i].file = takeNumber(rest, "/files/");
        if (findings[i].file) {
            findings[i].board = takeNumber(rest, "/boards/");
            entries.insert(*findings[i].file);
        }
    }
    if (entries.empty() || !isRead) {
        return;
    }
    const auto names = findEntryNames(description, entries);
    for (std::size_t i = first; i < findings.size(); ++i) {
        if (!names) {
            findings[i].file = findings[i].board = std::nullopt;
        } else if (const auto name = names->find(findings[i].file.value_or(-1)); name != names->end()) {
            findings[i].name = name->second;
        }
    }
}

std::string pointerOf(const UnknownMember& member)
{
    std::string object = member.object == ZoTDescriptionObject::INFO ? "/info" : "";
    object += member.file ? "/files/" + std::to_string(*member.file) : "";
    object += member.board ? "/boards/" + std::to_string(*member.board) : "";
    return pointerToMember(object, member.key);
}

void addUnknownKeys(std::vector<Finding>& findings, ZoITrellanInspector& inspector, const std::string& description)
{
    std::set<std::int32_t> passedOver;  // which may have what a newer format has
    std::set<std::string> faulty;       // what is refused needs no further word
    for (const Finding& found : findings) {
        if (found.rule == "unsupported-entry") {
            passedOver.insert(*found.file);
        } else if (found.rule == "structure" && found.pointer) {
            faulty.insert(*found.pointer);
        }
    }
    std::array<std::vector<std::string>, 4> known;
    for (const auto object : {ZoTDescriptionObject::WHOLE, ZoTDescriptionObject::INFO, ZoTDescriptionObject::ENTRY,
                              ZoTDescriptionObject::BOARD}) {
        for (unsigned i = 0; i < inspector.getMemberCount(object); ++i) {
            known[static_cast<std::size_t>(object)].push_back(inspector.getMember(object, i));
        }
    }
    const auto isKnown = [&](ZoTDescriptionObject object, std::string_view key) {
        const std::vector<std::string>& keys = known[static_cast<std::size_t>(object)];
        return std::find(keys.begin(), keys.end(), key) != keys.end();
    };
    for (const UnknownMember& member : findUnknownMembers(description, isKnown)) {
        std::string pointer = pointerOf(member);
        if (!passedOver.contains(member.file.value_or(-1)) && !faulty.contains(pointer)) {
            const std::string& near = nearest(member.key, known[static_cast<std::size_t>(member.object)]);
            findings.push_back(finding("unknown-key", ZoTSeverity::WARNING, std::move(pointer),
                                       "the format has no \"" + TrellanJson::shortened(member.key) +
                                           "\" here; the nearest is \"" + near + "\""));
        }
    }
}

void addDuplicates(std::vector<Finding>& findings, std::vector<JsonPlaces::DuplicateKey> duplicates)
{
    findings.reserve(findings.size() + duplicates.size());
    for (JsonPlaces::DuplicateKey& duplicate : duplicates) {
        findings.push_back(finding("duplicate-key", ZoTSeverity::ERROR, std::move(duplicate.pointer),
                                   "the member stands in its object already, and the last one counts: take one away"));
        findings.back().place = duplicate.place;
    }
}

// Where and why the text is no JSON, for what the library has found of it.
void addSyntax(std::vector<Finding>& findings, const JsonPlaces::Fault& fault)
{
    auto found =
        std::find_if(findings.begin(), findings.end(), [](const Finding& other) { return other.rule == "syntax"; });
    if (found == findings.end()) {
        found = findings.insert(findings.end(), finding("syntax", ZoTSeverity::ERROR, "", "this is no JSON."));
        found->pointer.reset();
    }
    found->place = fault.place;
    found->message += " (" + fault.reason + ")";
}

}  // namespace

std::vector<Finding> archiveFindings(ZoITrellanInspector& inspector, ZoTDescription read,
                                     const std::string& description)
{
    const bool isRead = read == ZoTDescription::READ;
    std::vector<Finding> findings = findingsOf(inspector);
    const std::size_t ownFindings = findings.size();
    if (isRead) {
        addUnknownKeys(findings, inspector, description);
    }
    JsonPlaces places = findPlaces(findings, description);
    addDuplicates(findings, std::move(places.duplicateKeys));
    noteEntries(findings, ownFindings, description, isRead);
    if (places.fault) {
        addSyntax(findings, *places.fault);
    }
    sortByPlace(findings);
    return findings;
}

}  // namespace TrellanTool
