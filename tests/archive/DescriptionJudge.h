// What a description must be read as, told without the library: by another JSON parser and the rules of the format,
// written out once more.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct JudgedFile {
    std::string name;
    std::uint32_t sequence = 0;
    std::uint32_t checksum = 0;
    bool isUpgrade = false;
    bool isForDrive = false;

    bool operator==(const JudgedFile&) const = default;
};

struct JudgedArchive {
    std::string name;
    std::string product;
    std::vector<JudgedFile> files;
    unsigned passedOver = 0;  // entries for newer libraries
};

// The archive that `text` describes; nothing where it must be refused. The update files in the archive's `folder` have
// binary headers.
std::optional<JudgedArchive> judge(const std::string& text, const std::string& folder);
