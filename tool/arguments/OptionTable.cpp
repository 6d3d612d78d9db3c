// The table of options: where their values go, and whom they concern.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <system_error>

#include "tool/arguments/Arguments.h"
#include "tool/arguments/Command.h"
#include "tool/arguments/Option.h"
#include "tool/arguments/Path.h"

namespace TrellanTool {

namespace {

using ZoNTrellanUpdater::ZoTOptions;

// The field that a pointer to a member of Arguments or of the library's options means.
template <auto Field>
auto& fieldOf(Arguments& arguments)
{
    if constexpr (requires { arguments.*Field; }) {
        return arguments.*Field;
    } else {
        return arguments.options.*Field;
    }
}

template <auto Field>
void setFlag(Arguments& arguments, const Option&, const std::string&)
{
    fieldOf<Field>(arguments) = true;
}

template <auto Field>
void setText(Arguments& arguments, const Option&, const std::string& text)
{
    fieldOf<Field>(arguments) = text;
}

template <auto Field>
void setPath(Arguments& arguments, const Option& option, const std::string& path)
{
    fieldOf<Field>(arguments) = absolutePath(option.name, path);
}

template <auto Field>
void addIndex(Arguments& arguments, const Option& option, const std::string& text)
{
    std::uint32_t index = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    if (error != std::errc() || stop != end) {
        throw UsageError(std::string(option.name) + ": '" + text + "' is no index (0 to 4294967295)");
    }
    fieldOf<Field>(arguments).push_back(index);
}

template <auto Field>
void setSeconds(Arguments& arguments, const Option& option, const std::string& text)
{
    double seconds = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(seconds > 0) || !std::isfinite(seconds)) {
        throw UsageError(std::string(option.name) + ": '" + text + "' is no number of seconds above 0");
    }
    fieldOf<Field>(arguments) = seconds;
}

constexpr const char* progressChoices[] = {"always", "auto", "never"};  // in the order of Progress

void setProgress(Arguments& arguments, const Option& option, const std::string& text)
{
    const auto* const found = std::find(std::begin(progressChoices), std::end(progressChoices), text);
    if (found == std::end(progressChoices)) {
        throw UsageError(std::string(option.name) + ": auto, always or never is expected, not '" + text + "'");
    }
    arguments.progress = static_cast<Progress>(found - std::begin(progressChoices));
}

constexpr Option optionTable[] = {
    {"--description", 0, "NAME", setText<&ZoTOptions::descriptionFileName>, ARCHIVE | CHECKS, NOTED,
     "Archive description file in the archive (archive.json)"},
    {"--board-types", 0, "LIST", setText<&ZoTOptions::boardTypes>, ELEMENTS, NOTED,
     "Only elements of boards of these types", Value::BOARD_TYPES},
    {"--serial-numbers", 0, "LIST", setText<&ZoTOptions::serialNumbers>, ELEMENTS, NOTED,
     "Only elements of boards with these serial numbers", Value::SERIAL_NUMBERS},
    {"--element-names", 0, "LIST", setText<&ZoTOptions::elementNames>, ELEMENTS, NOTED,
     "Only elements with these names", Value::ELEMENT_NAMES},
    {"--force", 0, nullptr, setFlag<&ZoTOptions::force>, FILES | COVERS, NOTED,
     "Carry out standard updates even where they are not required"},
    {"--no-progress", 0, nullptr, setFlag<&ZoTOptions::noProgress>, UPDATES, NOTED, "Print no progress lines"},
    {"--verbose", 'v', nullptr, setFlag<&ZoTOptions::verbose>, ARCHIVE | TARGET, NOTED, "Print more diagnostics"},
    {"--configuration", 0, nullptr, setFlag<&ZoTOptions::configuration>, ELEMENTS, NOTED,
     "Work on configuration elements instead of the others"},
    {"--disable-custom-elements", 0, nullptr, setFlag<&ZoTOptions::disableCustomElements>, ELEMENTS, NOTED,
     "Leave custom elements out of the update"},
    {"--exclude", 0, "INDEX", addIndex<&Arguments::excluded>, ELEMENTS, NOTED | REPEATABLE,
     "Leave the element with this number out of the update; may be repeated", Value::ELEMENT},
    {"--no-check", 0, nullptr, setFlag<&Arguments::noCheck>, ELEMENTS, TAKEN,
     "Check nothing beforehand; do just what the library does"},
    {"--target", 0, "FILE", setPath<&Arguments::targetFile>, TARGET, NOTED,
     "Simulated target to work on (sets TRELLAN_TARGET)", Value::FILE},
    {"--trace", 0, "FILE", setPath<&Arguments::traceFile>, LIBRARY, NOTED,
     "Where to trace the platform's calls (sets TRELLAN_TRACE)", Value::FILE},
    {"--dry-run", 'n', nullptr, setFlag<&Arguments::dryRun>, UPDATES, 0,
     "Tell what would be updated, and update nothing; with --json as a plan"},
    {"--plan", 0, "FILE", setPath<&Arguments::planFile>, UPDATES, 0,
     "Update only while this plan, written by --dry-run --json, still holds", Value::FILE},
    {"--verify", 0, nullptr, setFlag<&Arguments::verify>, UPDATES, 0,
     "Scan again after the update, and compare each updated element with its file"},
    {"--detailed-exit-status", 0, nullptr, setFlag<&Arguments::detailedExitStatus>, TELLS, 0,
     "End with 10 in place of 0 where there is something to update"},
    {"--events", 0, "FILE", setPath<&Arguments::eventsFile>, UPDATES, 0,
     "Append a line of JSON to this file for each event of the update", Value::FILE},
    {"--stall-timeout", 0, "SECONDS", setSeconds<&Arguments::stallTimeout>, UPDATES, 0,
     "Give the update up when it makes no progress for so long"},
    {"--progress", 0, "WHEN", setProgress, UPDATES, 0,
     "Print progress always, never, or (auto) as lines where there is no terminal", Value::OTHER, progressChoices},
    {"--element", 0, "INDEX", addIndex<&Arguments::explainedElements>, EXPLAINS, REPEATABLE,
     "Explain this element only; may be repeated", Value::ELEMENT},
    {"--file", 0, "NUMBER", addIndex<&Arguments::explainedFiles>, EXPLAINS, REPEATABLE,
     "Explain who is given this entry of the archive, counted from 0; may be repeated"},
    {"--strict", 0, nullptr, setFlag<&Arguments::strict>, CHECKS, 0, "Count warnings as errors"},
    {"--output", 0, "FILE", setPath<&Arguments::outputFile>, RESULT, 0,
     "Write the result to this file, as a whole, in place of standard output", Value::FILE},
    {"--html", 0, "FILE", setPath<&Arguments::htmlFile>, COVERS, 0, "Write a page for a browser to this file",
     Value::FILE},
    {"--quiet", 'q', nullptr, setFlag<&Arguments::quiet>, EVERYTHING, 0, "Print nothing on standard output"},
    {"--json", 0, nullptr, setFlag<&Arguments::json>, DOCUMENT, 0,
     "Print a JSON document; the library's own text goes to standard error"},
    {"--help", 'h', nullptr, setFlag<&Arguments::help>, EVERYTHING, 0, "Print this help"},
    {"--version", 0, nullptr, setFlag<&Arguments::version>, 0, 0, "Print the tool's version"},
};

}  // namespace

bool Option::isMeantFor(const Command& command) const
{
    return meaning == EVERYTHING || command.has(meaning);
}

std::span<const Option> allOptions()
{
    return optionTable;
}

const Option* findOption(std::string_view name)
{
    const Option* const found = std::find_if(std::begin(optionTable), std::end(optionTable),
                                             [&](const Option& option) { return option.name == name; });
    return found == std::end(optionTable) ? nullptr : found;
}

const Option* findOption(char letter)
{
    const Option* const found = std::find_if(std::begin(optionTable), std::end(optionTable), [&](const Option& option) {
        return letter != 0 && option.letter == letter;
    });
    return found == std::end(optionTable) ? nullptr : found;
}

}  // namespace TrellanTool
