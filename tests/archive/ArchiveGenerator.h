// ArchiveGenerator: valid archives by chance, the same for the same seed.
//
// They use all that a description may hold: several boards for one file, null and several variants, ids and target
// paths at the entry and in its boards, absent and null versions, skipped entries, and checksums left to files of all
// three kinds.
#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

struct GeneratedArchive {
    // What reading it must give for an accepted entry.
    struct File {
        std::string name;
        std::uint32_t sequence;
        std::uint32_t checksum;  // 0xFFFFFFFE: neither stated nor in the file
    };

    nlohmann::ordered_json description;
    std::map<std::string, std::string> content;  // of the update files whose checksum is not stated, by name
    std::vector<File> files;
};

class ArchiveGenerator {
public:
    explicit ArchiveGenerator(unsigned seed) : random(seed) {}

    GeneratedArchive next();

    // How often each feature was generated, by its name, so that a test can tell that it has seen all of them.
    const std::map<std::string, unsigned>& features() const { return counts; }

private:
    nlohmann::ordered_json makeInfo();
    nlohmann::ordered_json makeEntry(const std::string& name);
    void addBoards(nlohmann::ordered_json& entry, const std::string& targetKey);
    void addTarget(nlohmann::ordered_json& object, const std::string& targetKey);
    void addCriteria(nlohmann::ordered_json& object);
    void addFileProperties(nlohmann::ordered_json& entry);
    std::uint32_t addChecksum(nlohmann::ordered_json& entry, GeneratedArchive& archive);
    std::uint32_t makeContent(std::uint32_t checksum, std::string& content);

    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }
    bool oneIn(unsigned count) { return below(count) == 0; }
    nlohmann::ordered_json pick(const std::vector<nlohmann::ordered_json>& values);
    void saw(const std::string& feature) { ++counts[feature]; }

    std::mt19937 random;
    std::map<std::string, unsigned> counts;
};
