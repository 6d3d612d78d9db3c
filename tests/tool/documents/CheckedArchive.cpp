#include "tool/documents/CheckedArchive.h"

#include <sstream>

#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

void CheckedArchive::describeEntries(const Texts& entries) const
{
    std::string text = R"({"info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P",)"
                       R"( "archiveName": "N"}, "files": [)";
    for (const std::string& entry : entries) {
        text += (&entry == entries.data() ? "\n" : ",\n") + entry;
    }
    describe(text + "\n]}\n");
}

CheckedArchive::Texts CheckedArchive::lines() const
{
    std::istringstream text(printed(false));
    Texts result;
    for (std::string line; std::getline(text, line);) {
        result.push_back(line);
    }
    EXPECT_FALSE(result.empty());
    result.pop_back();
    return result;
}

CheckedArchive::Texts CheckedArchive::records() const
{
    const nlohmann::ordered_json document = conformingDocument(printed(true));
    Texts result;
    for (const nlohmann::ordered_json& finding : document.at("findings")) {
        result.push_back(finding.dump());
    }
    return result;
}

std::string CheckedArchive::printed(bool asJson) const
{
    const std::string archive = (folder.path() / archiveName).string();
    const RunResult result = ran(asJson ? Texts{"check", archive, "--json"} : Texts{"check", archive});
    EXPECT_EQ(result.err, "");
    const std::string path = folder.path().string();
    std::string text = result.out;
    for (std::size_t at = text.find(path); at != std::string::npos; at = text.find(path, at)) {
        text.replace(at, path.size(), "{folder}");
    }
    return text;
}
