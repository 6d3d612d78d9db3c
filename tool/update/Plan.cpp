// A plan is read, its digest made again, and each thing that it fixed held against what is now.
#include "tool/update/Plan.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

#include "json/HasNul.h"
#include "json/IsText.h"
#include "tool/TextFile.h"
#include "tool/documents/DocumentWriter.h"
#include "tool/documents/Sha256.h"

namespace TrellanTool {

namespace {

using TrellanJson::hasNul;
using TrellanJson::isText;
using TrellanJson::json;
using TrellanJson::ordered_json;

// As many differences as anybody reads.
constexpr std::size_t mostDifferences = 20;

// On one line, bytes that are not UTF-8 replaced as they are in documents.
std::string textOf(const ordered_json& value)
{
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

class NoPlan {};
class MemberTwice {};

// Turns the elements of a plan into their texts while it is read: 100,000 of them take far less room so. Refuses what
// is nested deeper than a plan, since a value's copy and its text take room on the stack for each level, and members
// that stand twice, of which the last alone would be kept.
class ElementsAsTexts {
public:
    bool operator()(int depth, ordered_json::parse_event_t event, ordered_json& value)
    {
        using Event = ordered_json::parse_event_t;
        if (depth > deepest) {
            throw NoPlan();
        }
        if (event == Event::key) {
            if (++members[static_cast<std::size_t>(depth)] > mostMembers) {
                throw NoPlan();
            }
            areMeant = depth == depthOfMembers ? isText(value, "elements") : areMeant;
        } else if (event == Event::object_end) {
            endObject(depth, value);
        }
        return true;
    }

private:
    void endObject(int depth, ordered_json& value)
    {
        if (std::exchange(members[static_cast<std::size_t>(depth) + 1], 0) != value.size()) {
            throw MemberTwice();
        }
        if (depth == depthOfElements && areMeant) {
            value = textOf(value);
        }
    }

    static constexpr int depthOfMembers = 1;
    static constexpr int depthOfElements = 2;
    static constexpr int deepest = 32;
    static constexpr std::size_t mostMembers = 500;  // an object looks through all that it has for each further one

    std::array<std::size_t, deepest + 2> members = {};  // of the object that is being read at each depth
    bool areMeant = false;
};

ordered_json parsed(const std::string& path, const std::string& text)
{
    if (hasNul(text)) {
        throw PlanError("the plan " + path + " is no JSON document");
    }
    try {
        return ordered_json::parse(text, ElementsAsTexts());
    } catch (const json::parse_error& error) {
        const bool isCutShort = error.byte > text.size();
        throw PlanError("the plan " + path + (isCutShort ? " is cut short" : " is no JSON document"));
    } catch (const json::out_of_range&) {  // a number beyond all that can be held
        throw PlanError("the plan " + path + " is no JSON document");
    } catch (const MemberTwice&) {
        throw PlanError("the plan " + path + " was changed since it was written");
    } catch (const NoPlan&) {
        throw PlanError("the plan " + path + " is no document of update --dry-run --json");
    }
}

ordered_json readPlan(const std::string& path)
{
    const std::optional<std::string> text = readWholeFile(path);
    if (!text) {
        throw PlanError("the plan " + path + " cannot be read: " + std::strerror(errno));
    }
    return parsed(path, *text);
}

bool isDryRun(const ordered_json& document)
{
    return document.is_object() && document.contains("command") && isText(document["command"], "update") &&
           document.contains("schemaVersion");
}

// As it is written: 1.0 has the same value.
bool isVersionOne(const ordered_json& version)
{
    return version.is_number_integer() && version == 1;
}

ordered_json elementAt(const ordered_json& elements, unsigned index)
{
    return ordered_json::parse(elements[index].get_ref<const std::string&>());
}

// Of the plan's text as it was written, without the digest in it.
std::string digestOf(const ordered_json& document)
{
    Sha256 sha256;
    DocumentWriter writer([&](std::string_view text) { sha256.add(text); }, "update");
    for (const auto& [name, value] : document.items()) {
        if (name == "elements") {
            writer.list(name.c_str(), static_cast<unsigned>(value.size()),
                        [&elements = value](unsigned i) { return elementAt(elements, i); });
        } else if (name != "schemaVersion" && name != "command" && name != "digest") {
            writer.member(name.c_str(), value);
        }
    }
    writer.end();
    return sha256.digest();
}

bool isUnchanged(const ordered_json& document)
{
    try {
        return isText(document["digest"], digestOf(document));
    } catch (const json::exception&) {
        return false;  // something else stands among the elements
    }
}

class Differences {
public:
    void note(const std::string& what, const ordered_json& planned, const ordered_json& now)
    {
        if (planned != now) {
            add(what + " was " + textOf(planned) + " in the plan, and is " + textOf(now));
        }
    }

    void add(const std::string& line)
    {
        if (++count <= mostDifferences) {
            lines.push_back(line);
        }
    }

    bool isEmpty() const { return count == 0; }

    std::vector<std::string> take()
    {
        if (count > mostDifferences) {
            lines.push_back("and " + std::to_string(count - mostDifferences) + " more differences");
        }
        return std::move(lines);
    }

private:
    std::size_t count = 0;
    std::vector<std::string> lines;
};

// As a document has it, in which bytes that are not UTF-8 are replaced.
ordered_json asWritten(const ordered_json& value)
{
    return ordered_json::parse(documentText(value));
}

void compareArchive(Differences& differences, const ordered_json& planned, const ordered_json& now)
{
    differences.note("the archive's version", planned.at("version"), now.at("version"));
    if (planned.at("sha256") != now.at("sha256")) {
        differences.add("the archive's description is another one than in the plan");
    }
}

void compareOptions(Differences& differences, const ordered_json& planned, const ordered_json& now)
{
    for (const auto& [name, option] : {std::pair("description", "--description"),
                                       {"boardTypes", "--board-types"},
                                       {"serialNumbers", "--serial-numbers"},
                                       {"elementNames", "--element-names"},
                                       {"exclude", "--exclude"},
                                       {"force", "--force"},
                                       {"configuration", "--configuration"},
                                       {"disableCustomElements", "--disable-custom-elements"}}) {
        differences.note(option, planned.at(name), now.at(name));
    }
}

void compareElement(Differences& differences, const ordered_json& planned, const ordered_json& now)
{
    const std::string index = std::to_string(now.at("index").get<std::uint32_t>());
    const std::string name = now.at("displayName").get<std::string>();
    for (const char* const key : {"displayName", "boardType", "serialNumber", "name", "keys"}) {
        if (planned.at(key) != now.at(key)) {
            differences.note("element " + index + " (" + name + "): " + key, planned.at(key), now.at(key));
            return;  // another element: the rest tells nothing more
        }
    }
    for (const auto& [key, value] : now.items()) {
        if (key != "disabled" && key != "checksumDiffers") {  // what others tell already
            differences.note(name + ": " + key, planned.at(key), value);
        }
    }
}

void compareElements(Differences& differences, const ordered_json& planned, const ElementRecords& now)
{
    differences.note("the number of elements", planned.size(), now.count());
    for (unsigned i = 0; i < now.count() && i < planned.size(); ++i) {
        const std::string record = textOf(now.at(i));
        if (planned[i].get_ref<const std::string&>() != record) {  // seldom
            compareElement(differences, elementAt(planned, i), ordered_json::parse(record));
        }
    }
}

}  // namespace

Plan::Plan(const std::string& path) : path(path), document(readPlan(path))
{
    if (!isDryRun(document)) {
        throw PlanError("the plan " + path + " is no document of update --dry-run --json");
    }
    if (!isVersionOne(document["schemaVersion"])) {
        throw PlanError("the plan " + path + " has schema version " + document["schemaVersion"].dump() +
                        ", and this tool knows version 1 alone");
    }
    if (!document.contains("digest")) {
        throw PlanError("the plan " + path + " is no document of update --dry-run --json");
    }
    if (!isUnchanged(document)) {
        throw PlanError("the plan " + path + " was changed since it was written");
    }
    if (document.contains("error")) {
        throw PlanError("the plan " + path + " is of an update that was refused");
    }
}

std::vector<std::string> Plan::differences(const DryRun& now) const
{
    try {
        Differences differences;
        compareArchive(differences, document.at("archive"), asWritten(now.archive()));
        compareOptions(differences, document.at("options"), asWritten(now.options()));
        compareElements(differences, document.at("elements"), now.elements());
        if (differences.isEmpty()) {
            differences.note("the phases", document.at("phases"), now.phases());
        }
        return differences.take();
    } catch (const json::exception&) {
        throw PlanError("the plan " + path + " is no document of update --dry-run --json");
    }
}

}  // namespace TrellanTool
