#include "tool/Arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace TrellanTool {

namespace {

using ZoNTrellanUpdater::ZoTOptions;

struct CommandEntry {
    const char* name;
    std::uint32_t code;
    bool takesArchive;
    bool givesJson;
    bool rebootSupport;
    const char* description;

    // The commands from this one on read the target's inventory, and with it the elements.
    bool readsTarget() const { return code >= ZoNTrellanUpdater::INSTALLED_VERSIONS; }
};

constexpr CommandEntry commands[] = {
    {"version", ZoNTrellanUpdater::TOOL_VERSION, false, false, false, "Print the version of the update library"},
    {"archive-version", ZoNTrellanUpdater::ARCHIVE_VERSION, true, false, false, "Print the version of the archive"},
    {"list", ZoNTrellanUpdater::PRINT_ARCHIVE, true, true, false, "Print the archive's update files"},
    {"describe", ZoNTrellanUpdater::OUTPUT_DESCRIPTION, true, false, false,
     "Print the archive description as JSON, missing checksums filled in"},
    {"installed", ZoNTrellanUpdater::INSTALLED_VERSIONS, false, true, false,
     "Print the versions installed on the target"},
    {"scan", ZoNTrellanUpdater::READ_INVENTORY, false, true, false, "Read the target's inventory"},
    {"compare", ZoNTrellanUpdater::COMPARE_VERSIONS, true, true, false,
     "Print installed and available versions side by side"},
    {"update", ZoNTrellanUpdater::UPDATE, true, false, false, "Update the target"},
    {"reboot-support", ZoNTrellanUpdater::READ_INVENTORY, false, false, true,
     "Tell whether the device can be rebooted automatically"},
};

struct TextOption {
    const char* name;
    std::string ZoTOptions::*field;
    const char* placeholder;
    const char* description;
};

constexpr TextOption textOptions[] = {
    {"--description", &ZoTOptions::descriptionFileName, "NAME",
     "Archive description file in the archive (archive.json)"},
    {"--board-types", &ZoTOptions::boardTypes, "LIST", "Only elements of boards of these types"},
    {"--serial-numbers", &ZoTOptions::serialNumbers, "LIST", "Only elements of boards with these serial numbers"},
    {"--element-names", &ZoTOptions::elementNames, "LIST", "Only elements with these names"},
};

struct FileOption {
    const char* name;
    std::optional<std::string> Arguments::*field;
    const char* description;
};

constexpr FileOption fileOptions[] = {
    {"--target", &Arguments::targetFile, "Simulated target to work on (sets TRELLAN_TARGET)"},
    {"--trace", &Arguments::traceFile, "Where to trace the platform's calls (sets TRELLAN_TRACE)"},
};

constexpr const char* excludeOption = "--exclude";

struct FlagOption {
    const char* name;
    bool ZoTOptions::*field;
    const char* description;
};

constexpr FlagOption flagOptions[] = {
    {"--force", &ZoTOptions::force, "Carry out standard updates even where they are not required"},
    {"--no-progress", &ZoTOptions::noProgress, "Print no progress lines"},
    {"--verbose,-v", &ZoTOptions::verbose, "Print more diagnostics"},
    {"--configuration", &ZoTOptions::configuration, "Work on configuration elements instead of the others"},
    {"--disable-custom-elements", &ZoTOptions::disableCustomElements, "Leave custom elements out of the update"},
};

constexpr const char* footer =
    "A LIST holds names separated by commas and/or blanks.\n"
    "\n"
    "Exit status:\n"
    "  0  success\n"
    "  1  the command failed, or errors were reported\n"
    "  2  wrong usage\n"
    "  3  the archive or the target's inventory cannot be read\n"
    "  4  the archive does not support the target";

std::optional<std::uint32_t> parseIndex(const std::string& text)
{
    std::uint32_t index = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, index);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    return index;
}

std::string checkIndex(const std::string& text)
{
    return parseIndex(text) ? "" : "'" + text + "' is no index (0 to 4294967295)";
}

std::string checkText(const std::string&)
{
    return "";
}

std::string checkPath(const std::string& text)
{
    return text.empty() ? "the path is empty" : "";
}

// The whole text is one value, also in brackets; where an option may occur several times, each takes one.
CLI::Option* takeOneValue(CLI::Option* option, const char* placeholder, std::string (*check)(const std::string&))
{
    return option->allow_extra_args(false)
        ->type_name(placeholder)
        ->option_text(placeholder)
        ->check(CLI::Validator(check, ""));
}

std::string absolutePath(const std::string& path)
{
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    if (error) {
        throw std::runtime_error("cannot tell which file the relative path '" + path +
                                 "' means: there is no working folder (" + error.message() + ")");
    }
    return absolute.string();
}

void addFileOption(CLI::App& app, const char* name, std::optional<std::string>& file, const char* description)
{
    CLI::Option* const option = app.add_option_function<std::string>(
        name, [&file](const std::string& path) { file = absolutePath(path); }, description);
    takeOneValue(option, "FILE", checkPath);
}

void addOptions(CLI::App& app, Arguments& arguments)
{
    for (const TextOption& entry : textOptions) {
        takeOneValue(app.add_option(entry.name, arguments.options.*entry.field, entry.description), entry.placeholder,
                     checkText);
    }
    for (const FlagOption& entry : flagOptions) {
        app.add_flag(entry.name, arguments.options.*entry.field, entry.description);
    }
    const auto exclude = [&arguments](const std::vector<std::string>& indices) {
        for (const std::string& index : indices) {
            arguments.excluded.push_back(parseIndex(index).value());
        }
    };
    takeOneValue(app.add_option_function<std::vector<std::string>>(
                     excludeOption, exclude, "Leave the element with this number out of the update; may be repeated"),
                 "INDEX", checkIndex);
    for (const FileOption& entry : fileOptions) {
        addFileOption(app, entry.name, arguments.*entry.field, entry.description);
    }
}

void addArchive(CLI::App& app, std::string& archivePath)
{
    const auto keep = [&archivePath](const std::string& path) { archivePath = absolutePath(path); };
    takeOneValue(app.add_option_function<std::string>("ARCHIVE", keep, "Folder of the firmware archive"), "(required)",
                 checkPath)
        ->required();
}

void addCommand(CLI::App& app, const CommandEntry& entry, Arguments& arguments)
{
    CLI::App* const command = app.add_subcommand(entry.name, entry.description);
    if (entry.takesArchive) {
        addArchive(*command, arguments.options.archivePath);
    }
    addOptions(*command, arguments);
    if (entry.givesJson) {
        command->add_flag("--json", arguments.json,
                          "Print a JSON document; the library's own text goes to standard error");
    }
    command->callback([&arguments, &entry] {
        arguments.command = entry.name;
        arguments.options.command = entry.code;
        arguments.rebootSupport = entry.rebootSupport;
        arguments.hasElements = entry.readsTarget();
    });
}

// The option that has this name with some command, or null.
const CLI::Option* findOption(const CLI::App& app, const std::string& name)
{
    for (const CLI::App* const command : app.get_subcommands(nullptr)) {
        if (const CLI::Option* const option = command->get_option_no_throw(name)) {
            return option;
        }
    }
    return nullptr;
}

// The parser would read "-v-force" as "-v --force", and "-v-" as "-v --".
void checkShortFlags(const std::string& argument)
{
    if (argument.starts_with('-') && !argument.starts_with("--") && argument.find('-', 1) != std::string::npos) {
        throw UsageError("unexpected argument '" + argument + "'");
    }
}

// A flag has no value, though the parser would take one. An option whose value was forgotten would take the next option
// for it; what is behind "=" cannot be meant otherwise.
void checkValues(const CLI::App& app, const std::vector<std::string>& arguments)
{
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        checkShortFlags(arguments[i]);
        const std::string name = arguments[i].substr(0, arguments[i].find('='));
        const CLI::Option* const option = name.starts_with("--") ? findOption(app, name) : nullptr;
        const bool hasValue = name != arguments[i];
        if (option == nullptr) {
            continue;
        }
        if (option->get_items_expected_max() == 0 && hasValue) {
            throw UsageError(name + ": no value is expected");
        }
        if (option->get_items_expected_max() == 0 || hasValue || i + 1 == arguments.size()) {
            continue;
        }
        const std::string& value = arguments[++i];
        if (name != excludeOption && value.starts_with('-')) {
            throw UsageError(name + ": a value is expected, not '" + value + "'");
        }
    }
}

// The arguments in the order that the parser takes them off: the last one first. "--name=" is written as two arguments,
// since the parser would take the argument after it as the value.
std::vector<std::string> toBeParsed(std::vector<std::string> typed)
{
    std::vector<std::string> arguments;
    bool options = true;
    for (std::string& argument : typed) {
        options = options && argument != "--";
        const bool emptyValue = options && argument.starts_with("--") && argument.find('=') == argument.size() - 1;
        if (emptyValue) {
            argument.pop_back();
        }
        arguments.push_back(std::move(argument));
        if (emptyValue) {
            arguments.emplace_back();
        }
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

// What was typed for the argument `rest` that the parser left: of "-vx" it takes the "v" off.
std::string asTyped(const std::string& rest, const std::vector<std::string>& typed)
{
    const auto cutTo = [&](const std::string& argument) {
        return argument.starts_with('-') && !argument.starts_with("--") && argument.ends_with(rest.substr(1));
    };
    const bool uncut = std::find(typed.begin(), typed.end(), rest) != typed.end();
    const auto found = uncut || !rest.starts_with('-') ? typed.end() : std::find_if(typed.begin(), typed.end(), cutTo);
    return found == typed.end() ? rest : *found;
}

// The parser would not say which command is unknown, and would name several unexpected arguments backwards.
void checkRest(const CLI::App& app, const std::vector<std::string>& typed)
{
    const std::vector<std::string> rest = app.remaining(true);
    const bool hasCommand = !app.get_subcommands().empty();
    if (!hasCommand && rest.empty()) {
        throw UsageError("a command is missing");
    }
    if (!hasCommand) {
        throw UsageError("'" + rest.front() + "' is no command");
    }
    if (app.remaining_size(true) == 0) {  // which does not count the "--" before a positional argument
        return;
    }
    const auto unexpected = std::find_if(rest.begin(), rest.end(), [](const auto& text) { return text != "--"; });
    throw UsageError("unexpected argument '" + (unexpected == rest.end() ? "--" : asTyped(*unexpected, typed)) + "'");
}

}  // namespace

Arguments parseArguments(int argc, const char* const* argv)
{
    const std::vector<std::string> typed(argv + std::min(argc, 1), argv + argc);
    Arguments arguments;
    arguments.options.descriptionFileName = "archive.json";

    CLI::App app("Updates the firmware of a target from an archive.", "trellan-update");
    app.set_help_flag("--help,-h", "Print this help");
    app.require_subcommand(0, 1);
    app.footer(footer);
    app.allow_extras();
    for (const CommandEntry& entry : commands) {
        addCommand(app, entry, arguments);
    }

    checkValues(app, typed);
    try {
        app.parse(toBeParsed(typed));
    } catch (const CLI::CallForHelp&) {
        arguments.help = app.help();
        return arguments;
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what());
    }
    checkRest(app, typed);
    return arguments;
}

}  // namespace TrellanTool
