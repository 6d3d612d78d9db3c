// The command that begins an archive.
#include <filesystem>
#include <memory>
#include <ostream>
#include <sstream>
#include <system_error>

#include "json/Json.h"
#include "tool/ExitStatus.h"
#include "tool/OutputFile.h"
#include "tool/Streams.h"
#include "tool/TextStream.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/NewDescription.h"

namespace TrellanTool {

namespace {

namespace fs = std::filesystem;

using ZoNTrellanInspector::ZoTElement;
using ZoNTrellanUpdater::ZoTUpdateElement;

// The name of the archive in `folder`; the root folder has none.
std::string nameOf(const std::string& folder, const std::string& otherwise)
{
    const fs::path path = fs::path(folder).lexically_normal();
    const std::string name = path.has_filename() ? path.filename() : path.parent_path().filename();
    return name.empty() ? otherwise : name;
}

struct WantedElements {
    std::vector<WantedElement> elements;
    bool isComplete = true;
    std::string productName;
};

bool isUtf8(const std::string& text)
{
    try {
        TrellanJson::json(text).dump();
        return true;
    } catch (const TrellanJson::json::type_error&) {
        return false;
    }
}

// Those that an update would not leave out anyway. What no description can state is named on `err`.
WantedElements wantedElements(const Arguments& arguments, LibrarySession& session, std::ostream& err)
{
    ZoTUpdateElement* array = nullptr;
    unsigned count = 0;
    session.updater().getUpdateElementList(array, count);
    const std::unique_ptr<ZoTUpdateElement[]> list(array);
    WantedElements wanted;
    for (unsigned i = 0; i < count; ++i) {
        if (list[i].disabled || (list[i].custom && arguments.options.disableCustomElements)) {
            continue;
        }
        const ZoTElement& element = session.inspector().getElement(i);
        const auto& keys = session.inspector().getElementKeys(i);
        if (!isUtf8(keys.boardType) || !isUtf8(keys.boardVariant) || !isUtf8(keys.targetPath)) {
            say(err, list[i].displayName + " has keys that are not UTF-8: no entry can state them");
            wanted.isComplete = false;
            continue;
        }
        wanted.productName = wanted.elements.empty() ? list[i].boardName : wanted.productName;
        wanted.elements.push_back({keys, element.name, element.boardAddress, list[i].installedVersion});
    }
    return wanted;
}

// Throws UsageError for a description that would not be a file in the archive's folder.
void checkName(const Arguments& arguments, const std::string& folder, const std::string& name)
{
    const fs::path inFolder = fs::path("./" + name).lexically_normal();
    if (name.empty() || !inFolder.has_filename() || inFolder == "." || *inFolder.begin() == "..") {
        throw UsageError("--description: '" + name + "' is no name of a file in the archive", arguments.command);
    }
    std::error_code error;
    const fs::path archive = fs::weakly_canonical(folder, error);
    const fs::path path = fs::weakly_canonical(folder + "/" + name, error);
    if (!error && *path.lexically_relative(archive).begin() == "..") {
        throw UsageError("--description: '" + name + "' leads out of the archive", arguments.command);
    }
}

// Why nothing can be begun there; empty: it can.
std::string hindranceAt(const std::string& folder, const fs::path& description)
{
    std::error_code error;
    if (fs::exists(fs::symlink_status(description, error))) {
        return description.string() + " is there already, and is left as it is";
    }
    if (fs::is_symlink(folder, error) && !fs::exists(folder, error)) {
        return folder + " is a link to nothing";
    }
    return "";
}

int applied(LibrarySession& session, const Arguments& arguments, const std::ostringstream& text, std::ostream& err)
{
    const int status = session.apply(err);
    if (status != SUCCESS || arguments.options.verbose) {
        err << text.str();
    }
    return status;
}

std::string numberOf(std::size_t count, const char* one, const char* several)
{
    return std::to_string(count) + " " + (count == 1 ? one : several);
}

}  // namespace

int newArchive(const Arguments& arguments, const Streams& streams)
{
    const std::string& name = arguments.options.descriptionFileName;
    const fs::path path = arguments.options.archivePath + "/" + name;
    checkName(arguments, arguments.options.archivePath, name);
    if (const std::string hindrance = hindranceAt(arguments.options.archivePath, path); !hindrance.empty()) {
        say(streams.err, hindrance);
        return FAILURE;
    }
    TextStream text;
    LibrarySession session(arguments, text);
    if (const int status = applied(session, arguments, text, streams.err); status != SUCCESS) {
        return status;
    }
    const WantedElements wanted = wantedElements(arguments, session, streams.err);
    if (wanted.elements.empty()) {
        say(streams.err, "there is no element that an archive could be for; nothing was written");
        return FAILURE;
    }
    const std::vector<NewEntry> entries = newEntries(wanted.elements);
    const auto description =
        newDescription({nameOf(arguments.options.archivePath, wanted.productName), wanted.productName}, entries, name);
    writeNewFile(path, [&](std::ostream& file) {
        file << description.dump(2, ' ', false, TrellanJson::ordered_json::error_handler_t::replace) << '\n';
    });
    streams.out << name << ": " << numberOf(entries.size(), "entry", "entries") << " for "
                << numberOf(wanted.elements.size(), "element", "elements")
                << ". Put the update files into the archive's folder under the names that\n"
                   "it gives, state their versions and checksums (trellan-update inspect tells them), and check the "
                   "archive.\n";
    return wanted.isComplete ? SUCCESS : FAILURE;
}

}  // namespace TrellanTool
