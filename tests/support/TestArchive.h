// TestArchive: a firmware archive of a test's own, and builders for its description.
//
//   TestArchive archive(description({fileEntry("firmware.bin", {{"id", 3}})}));
//   archive.addFile("firmware.bin", "content");
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "support/TempDir.h"

class TestArchive {
public:
    // A fresh folder with the description file archive.json: `description` as JSON, or a text as it is.
    explicit TestArchive(const nlohmann::ordered_json& description);
    explicit TestArchive(const std::string& rawText);
    explicit TestArchive(const char* rawText);

    // Puts a file into the archive.
    void addFile(const std::string& name, std::string_view content);

    // The archive's folder, absolute.
    std::string path() const { return directory.path().string(); }

private:
    TempDir directory;
};

// A valid "info" object: format 1.0, archive version 2.3.4, product "Test product", name "Test archive".
nlohmann::ordered_json info();

// A description with info() and `files`.
nlohmann::ordered_json description(std::vector<nlohmann::ordered_json> files);

// A file entry with "sequence" 1, "boardType" "KR5120", "id" 1 and "checksumCrc32" 1, where `overrides` states nothing
// else. With "boards" it has no "boardType" and no "id" of its own, with "targetPath" no "id", unless stated.
nlohmann::ordered_json fileEntry(std::string name, nlohmann::ordered_json overrides = nlohmann::ordered_json::object());

// `object` without the member `key`.
nlohmann::ordered_json without(nlohmann::ordered_json object, const std::string& key);
