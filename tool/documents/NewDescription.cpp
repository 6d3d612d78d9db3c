// The keys of the entries are all stated, also where they are what is meant anyway.
#include "tool/documents/NewDescription.h"

#include <algorithm>
#include <set>

namespace TrellanTool {

namespace {

using TrellanJson::ordered_json;

constexpr const char* listNames[NewEntry::listCount] = {"boardVariant", "boardId", "hwCompatibilityId",
                                                        "swCompatibilityId"};

// Names of files that any shell and any file system takes, each given once.
class FileNames {
public:
    explicit FileNames(const std::string& taken) : given{taken} {}

    std::string nameFor(const NewEntry& entry)
    {
        const std::string& whole = entry.isFile ? entry.targetPath : entry.elementName;
        const std::string last = whole.substr(whole.rfind('/') + 1);
        const std::size_t dot = entry.isFile ? extensionOf(last) : last.size();
        const std::string extension = dot == last.size() ? ".bin" : plain(last.substr(dot));
        const std::string stem = board(plain(entry.boardType)) + "-" + plain(last.substr(0, dot));
        std::string name = stem + extension;
        for (unsigned number = 2; !given.insert(name).second; ++number) {
            name = stem + "-" + std::to_string(number) + extension;
        }
        return name;
    }

private:
    static constexpr std::size_t longestPart = 80;
    static constexpr std::size_t longestExtension = 10;

    // Where it begins; at the end where there is none. ".tmp" is what files are called while they are written.
    static std::size_t extensionOf(const std::string& name)
    {
        const std::size_t dot = name.rfind('.');
        const bool isSound = dot != std::string::npos && dot > 0 && dot + 1 < name.size() &&
                             name.size() - dot <= longestExtension && name.substr(dot) != ".tmp";
        return isSound ? dot : name.size();
    }

    // Neither a hidden file nor what a command takes for an option.
    static std::string board(const std::string& type)
    {
        return type.empty() || type.front() == '.' || type.front() == '-' ? "board" + type : type;
    }

    static bool isPlain(char character)
    {
        constexpr std::string_view others = "._+";
        return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
               (character >= 'a' && character <= 'z') || others.find(character) != std::string_view::npos;
    }

    static std::string plain(std::string text)
    {
        text.resize(std::min(text.size(), longestPart));
        std::replace_if(
            text.begin(), text.end(), [](char character) { return !isPlain(character); }, '-');
        return text;
    }

    std::set<std::string> given;
};

ordered_json valueOf(const NewEntry::Values& values)
{
    return values.size() == 1 ? ordered_json(*values.begin()) : ordered_json(values);
}

ordered_json jsonOf(const NewEntry& entry, FileNames& names)
{
    ordered_json json = {{"name", names.nameFor(entry)}, {"sequence", entry.sequence}};
    json["version"] = entry.version.empty() ? ordered_json() : ordered_json(entry.version);
    json["checksumCrc32"] = 0;
    json["boardType"] = entry.boardType;
    for (std::size_t i = 0; i < NewEntry::listCount; ++i) {
        json[listNames[i]] = valueOf(entry.lists[i]);
    }
    if (entry.isFile) {
        json["targetPath"] = entry.targetPath;
    } else {
        json["id"] = entry.id;
    }
    return json;
}

}  // namespace

ordered_json newDescription(const NewInfo& info, const std::vector<NewEntry>& entries, const std::string& taken)
{
    ordered_json description = ordered_json::object();
    description["info"] = {{"formatVersion", "1.0"},
                           {"archiveVersion", "1.0"},
                           {"productName", info.productName},
                           {"archiveName", info.archiveName}};
    description["files"] = ordered_json::array();
    FileNames names(taken);
    for (const NewEntry& entry : entries) {
        description["files"].push_back(jsonOf(entry, names));
    }
    return description;
}

}  // namespace TrellanTool
