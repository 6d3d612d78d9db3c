// The command that begins an archive.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <ostream>
#include <sstream>
#include <stdexcept>

#include "tool/ExitStatus.h"
#include "tool/Streams.h"
#include "tool/arguments/Arguments.h"
#include "tool/commands/Actions.h"
#include "tool/commands/LibrarySession.h"
#include "tool/documents/NewDescription.h"

namespace TrellanTool {

namespace {

namespace fs = std::filesystem;

// The name of the archive in `folder`; the root folder has none.
std::string nameOf(const std::string& folder, const std::string& otherwise)
{
    const fs::path path = fs::path(folder).lexically_normal();
    const std::string name = path.has_filename() ? path.filename() : path.parent_path().filename();
    return name.empty() ? otherwise : name;
}
using ZoNTrellanInspector::ZoTElement;
using ZoNTrellanUpdater::ZoTUpdateElement;

struct Wanted {
    std::vector<WantedElement> elements;
    bool isComplete = true;
    std::string productName;
};

bool isUtf8(const std::string& text)
{
    try {
        nlohmann::json(text).dump();
        return true;
    } catch (const nlohmann::json::type_error&) {
        return false;
    }
}

// Those that an update would not leave out anyway. What no description can state is named on `err`.
Wanted wantedElements(const Arguments& arguments, LibrarySession& session, std::ostream& err)
{
    ZoTUpdateElement* array = nullptr;
    unsigned count = 0;
    session.updater().getUpdateElementList(array, count);
    const std::unique_ptr<ZoTUpdateElement[]> list(array);
    Wanted wanted;
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

[[noreturn]] void failToWrite(const fs::path& path, int error)
{
    throw std::runtime_error(path.string() + " cannot be written: " + std::strerror(error));
}

// What is there, be it a link to nothing, is not touched.
void writeNewFile(const fs::path& path, const std::string& text)
{
    std::error_code error;
    if (fs::create_directories(path.parent_path(), error); error) {
        failToWrite(path, error.value());
    }
    std::FILE* const file = std::fopen(path.c_str(), "wbx");
    if (file == nullptr) {
        failToWrite(path, errno);
    }
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size() && std::fflush(file) == 0;
    int problem = errno;
    const bool isClosed = std::fclose(file) == 0;
    if (!isWritten || !isClosed) {
        problem = isWritten ? errno : problem;
        fs::remove(path, error);
        failToWrite(path, problem);
    }
}

int applied(LibrarySession& session, const Arguments& arguments, const std::ostringstream& text, std::ostream& err)
{
    const int status = session.apply(err);
    if (status != SUCCESS || arguments.options.verbose) {
        err << text.str();
    }
    return status;
}

std::string counted(std::size_t count, const char* one, const char* several)
{
    return std::to_string(count) + " " + (count == 1 ? one : several);
}

}  // namespace

int newArchive(const Arguments& arguments, const Streams& streams)
{
    const std::string& name = arguments.options.descriptionFileName;
    const fs::path path = arguments.options.archivePath + "/" + name;
    std::error_code error;
    if (fs::exists(fs::symlink_status(path, error))) {
        say(streams.err, path.string() + " is there already, and is left as it is");
        return FAILURE;
    }
    std::ostringstream text;
    LibrarySession session(arguments, text);
    if (const int status = applied(session, arguments, text, streams.err); status != SUCCESS) {
        return status;
    }
    const Wanted wanted = wantedElements(arguments, session, streams.err);
    if (wanted.elements.empty()) {
        say(streams.err, "there is no element that an archive could be for; nothing was written");
        return FAILURE;
    }
    const std::vector<NewEntry> entries = newEntries(wanted.elements);
    const auto description =
        newDescription({nameOf(arguments.options.archivePath, wanted.productName), wanted.productName}, entries, name);
    writeNewFile(path, description.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n");
    streams.out << name << ": " << counted(entries.size(), "entry", "entries") << " for "
                << counted(wanted.elements.size(), "element", "elements")
                << ". Put the update files beside it under the names that it gives\n"
                   "them, state their versions and checksums (trellan-update inspect tells them), and check the "
                   "archive.\n";
    return wanted.isComplete ? SUCCESS : FAILURE;
}

}  // namespace TrellanTool
