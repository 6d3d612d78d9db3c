#include "support/TestArchive.h"

using nlohmann::ordered_json;

TestArchive::TestArchive(const ordered_json& description) : TestArchive(description.dump(2) + "\n") {}

TestArchive::TestArchive(const std::string& rawText)
{
    directory.write("archive.json", rawText);
}

TestArchive::TestArchive(const char* rawText) : TestArchive(std::string(rawText)) {}

void TestArchive::addFile(const std::string& name, std::string_view content)
{
    directory.write(name, content);
}

ordered_json info()
{
    return {{"formatVersion", "1.0"},
            {"archiveVersion", "2.3.4"},
            {"productName", "Test product"},
            {"archiveName", "Test archive"}};
}

ordered_json description(std::vector<ordered_json> files)
{
    return {{"info", info()}, {"files", files}};
}

ordered_json fileEntry(std::string name, ordered_json overrides)
{
    ordered_json entry = {{"name", name}, {"sequence", 1}};
    if (!overrides.contains("boards")) {
        entry["boardType"] = "KR5120";
    }
    if (!overrides.contains("boards") && !overrides.contains("targetPath")) {
        entry["id"] = 1;
    }
    entry["checksumCrc32"] = 1;
    if (!overrides.is_null()) {
        entry.update(overrides);
    }
    return entry;
}

ordered_json without(ordered_json object, const std::string& key)
{
    object.erase(key);
    return object;
}
