// What update files say of themselves, as text and as JSON.
#pragma once

#include <string>
#include <vector>

#include "ZoITrellanInspector.h"
#include "json/JsonForward.h"

namespace TrellanTool {

struct InspectedFile {
    std::string path;  // as it was asked for
    ZoNTrellanInspector::ZoTFileHeader header;

    bool isReadable() const { return header.kind != ZoNTrellanInspector::ZoTFileKind::UNREADABLE; }
};

// A table with a line for each file that can be read.
std::string inspectedText(const std::vector<InspectedFile>& files);

// A file's object in the document.
TrellanJson::ordered_json inspectedRecord(const InspectedFile& file);

}  // namespace TrellanTool
