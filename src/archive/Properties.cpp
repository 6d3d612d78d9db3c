#include "archive/Properties.h"

#include "archive/ObjectMembers.h"
#include "base/PlatformText.h"
#include "updater/ZoCTrellanUpdater.h"

using namespace ZoNUpdateBase;

namespace ZoNUpdateArchive {

ZoCString toString(const ZoNJson::json& text)
{
    return platformText(std::string(text));
}

ZoCVersion toVersion(const ZoNJson::json& text)
{
    const std::string version(text);
    return version.find('\0') == std::string::npos ? ZoCVersion(version.c_str()) : ZoCVersion();
}

bool hasString(const ZoNJson::json& object, const char* key)
{
    return object.contains(key) && object[key].is_string();
}

bool statesTargetPath(const ObjectMembers& entry)
{
    bool stated = entry.has(Property::targetPath);
    if (entry.has(Property::boards)) {
        for (const ZoNJson::json& board : entry[Property::boards]) {
            stated = stated || board.contains("targetPath");
        }
    }
    return stated;
}

}  // namespace ZoNUpdateArchive
