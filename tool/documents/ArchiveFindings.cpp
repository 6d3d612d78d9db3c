// The library finds what concerns the entries and their files. What concerns the text, which it does not keep, is found
// here: a syntax error, members that stand twice, and members that the format does not have.
#include "tool/documents/ArchiveFindings.h"

#include <algorithm>
#include <charconv>
#include <set>

#include "json/Json.h"
#include "tool/Nearest.h"

namespace TrellanTool {

namespace {

using TrellanJson::json;
using ZoNTrellanInspector::ZoTDescription;
using ZoNTrellanInspector::ZoTDescriptionObject;
using ZoNTrellanInspector::ZoTSeverity;

Finding finding(const char* rule, ZoTSeverity severity, std::string pointer, std::string message)
{
    return {rule,         severity,           std::nullopt, std::nullopt, "", std::move(pointer),
            std::nullopt, std::move(message), std::nullopt, std::nullopt};
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

// Notes which entry and board object the finding's pointer is about.
void noteEntry(Finding& finding, const json& document)
{
    const bool hasEntries = !document.is_object() || (document.contains("files") && document["files"].is_array());
    std::string_view rest = *finding.pointer;
    finding.file = hasEntries ? takeNumber(rest, "/files/") : std::nullopt;
    if (!finding.file) {
        return;
    }
    finding.board = takeNumber(rest, "/boards/");
    const json::json_pointer name("/files/" + std::to_string(*finding.file) + "/name");
    if (document.contains(name) && document[name].is_string()) {
        finding.name = document[name];
    }
}

// Looks at the members of the description for those that the format does not have.
class UnknownKeys {
public:
    UnknownKeys(ZoITrellanInspector& inspector, const std::set<std::int32_t>& passedOver)
        : inspector(inspector), passedOver(passedOver)
    {
    }

    void check(const json& document)
    {
        checkObject(document, ZoTDescriptionObject::WHOLE, "");
        if (!document.is_object()) {
            return;
        }
        if (document.contains("info")) {
            checkObject(document["info"], ZoTDescriptionObject::INFO, "/info");
        }
        forEach(document, "files", "", [this](const json& entry, std::size_t number, const std::string& pointer) {
            if (passedOver.contains(static_cast<std::int32_t>(number))) {
                return;  // it may have what a newer format has
            }
            checkObject(entry, ZoTDescriptionObject::ENTRY, pointer);
            forEach(entry, "boards", pointer, [this](const json& board, std::size_t, const std::string& place) {
                checkObject(board, ZoTDescriptionObject::BOARD, place);
            });
        });
    }

    std::vector<Finding> findings;

private:
    template <class Take>
    void forEach(const json& object, const char* key, const std::string& pointer, Take take)
    {
        if (!object.is_object() || !object.contains(key) || !object[key].is_array()) {
            return;
        }
        std::size_t number = 0;
        for (const json& element : object[key]) {
            take(element, number, pointer + "/" + key + "/" + std::to_string(number));
            ++number;
        }
    }

    void checkObject(const json& object, ZoTDescriptionObject kind, const std::string& pointer)
    {
        if (!object.is_object()) {
            return;
        }
        const std::vector<std::string>& known = membersOf(kind);
        for (const auto& [key, value] : object.items()) {
            if (std::find(known.begin(), known.end(), key) == known.end()) {
                findings.push_back(
                    finding("unknown-key", ZoTSeverity::WARNING, pointerToMember(pointer, key),
                            "the format has no \"" + key + "\" here; the nearest is \"" + nearest(key, known) + "\""));
            }
        }
    }

    const std::vector<std::string>& membersOf(ZoTDescriptionObject kind)
    {
        std::vector<std::string>& known = members[static_cast<std::size_t>(kind)];
        for (unsigned i = static_cast<unsigned>(known.size()); i < inspector.getMemberCount(kind); ++i) {
            known.push_back(inspector.getMember(kind, i));
        }
        return known;
    }

    ZoITrellanInspector& inspector;
    const std::set<std::int32_t>& passedOver;
    std::vector<std::string> members[4];
};

void addUnknownKeys(std::vector<Finding>& findings, ZoITrellanInspector& inspector, const json& document)
{
    std::set<std::int32_t> passedOver;
    std::set<std::string> faulty;  // what is refused needs no further word
    for (const Finding& found : findings) {
        if (found.rule == "unsupported-entry") {
            passedOver.insert(*found.file);
        } else if (found.rule == "structure" && found.pointer) {
            faulty.insert(*found.pointer);
        }
    }
    UnknownKeys unknown(inspector, passedOver);
    unknown.check(document);
    for (Finding& found : unknown.findings) {
        if (!faulty.contains(*found.pointer)) {
            noteEntry(found, document);
            findings.push_back(std::move(found));
        }
    }
}

void addDuplicates(std::vector<Finding>& findings, const JsonPlaces& places, const json& document)
{
    for (const JsonPlaces::DuplicateKey& duplicate : places.duplicateKeys) {
        Finding found = finding("duplicate-key", ZoTSeverity::ERROR, duplicate.pointer,
                                "the member stands in its object already, and the last one counts: take one away");
        found.place = duplicate.place;
        noteEntry(found, document);
        findings.push_back(std::move(found));
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

std::vector<Finding> archiveFindings(ZoITrellanInspector& inspector, const std::string& description,
                                     ZoNTrellanInspector::ZoTReadProgress progress, void* context)
{
    const bool isRead = inspector.checkArchive(progress, context) == ZoTDescription::READ;
    std::vector<Finding> findings = findingsOf(inspector);
    const json document = isRead ? json::parse(description, nullptr, false) : json();
    addUnknownKeys(findings, inspector, document);
    const JsonPlaces places = findPlaces(findings, description);
    addDuplicates(findings, places, document);
    if (places.fault) {
        addSyntax(findings, *places.fault);
    }
    sortByPlace(findings);
    return findings;
}

}  // namespace TrellanTool
