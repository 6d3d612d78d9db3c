// What a description must be read as, told without the library: by another JSON parser and the rules of the format,
// written out once more.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

// What a file asks of elements by one of its board objects, or by itself where it has none.
struct JudgedKeys {
    std::vector<std::string> decidesFor;  // board types that no board object before it has
    nlohmann::json boardType;
    nlohmann::json boardVariant;
    nlohmann::json boardId;
    nlohmann::json hwCompatibilityId;
    nlohmann::json swCompatibilityId;
    nlohmann::json id;          // discarded where there is none
    nlohmann::json targetPath;  // discarded for what is not on the drive

    bool operator==(const JudgedKeys& other) const;
};

struct JudgedFile {
    std::string name;
    std::uint32_t entry = 0;  // position in "files"
    std::uint32_t sequence = 0;
    std::uint64_t version = 0;  // each number in its place of the 64 bits; 0: none
    std::uint32_t checksum = 0;
    bool isUpgrade = false;
    bool isForDrive = false;
    std::vector<JudgedKeys> keys;

    bool operator==(const JudgedFile&) const = default;
};

struct JudgedArchive {
    std::string name;
    std::uint64_t version = 0;
    std::uint64_t format = 0;
    std::string product;
    std::string variant;
    std::vector<JudgedFile> files;
    unsigned passedOver = 0;  // entries for newer libraries
};

// The archive that `text` describes; nothing where it must be refused. The update files in the archive's `folder` have
// binary headers.
std::optional<JudgedArchive> judge(const std::string& text, const std::string& folder);
