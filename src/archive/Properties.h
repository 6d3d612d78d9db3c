// Conversions of an archive description's JSON properties.
#pragma once

#include <string>

#include "libZoComposite/ZoCString.h"
#include "libZoCompositeFactory/ZoCVersion.h"
#include "libZoJsonLib/ZoNJson.h"

namespace ZoNUpdateArchive {

class ObjectMembers;

// A string property.
ZoCString toString(const ZoNJson::json& text);

// A string property that holds a version; the empty version when it does not parse.
ZoCVersion toVersion(const ZoNJson::json& text);

// True when `object` has the property `key` and it is a string.
bool hasString(const ZoNJson::json& object, const char* key);

// True when the file entry, or one of its board objects, is for a file on the flash drive.
bool statesTargetPath(const ObjectMembers& entry);

}  // namespace ZoNUpdateArchive
