// Reading an archive's description; beside it what parsers take that know nothing of the format, which then only copy
// eight members of each entry, and what reading the file's bytes takes. Destruction is part of it.
#include <rapidjson/document.h>
#include <simdjson.h>

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "Measure.h"
#include "Production.h"
#include "Workspace.h"

namespace {

std::string descriptionFile(const benchmark::State& state)
{
    return (productionFolder(sizeOf(state)) / "archive.json").string();
}

// Measures `read`, and how far memory grows for each byte of the description.
template <class Read>
void measureReading(benchmark::State& state, Read read)
{
    const std::string path = descriptionFile(state);
    for ([[maybe_unused]] auto iteration : state) {
        read(path);
    }
    const MemoryPeak peak;
    read(path);
    state.counters["peak_per_byte"] = peak.growth() / static_cast<double>(std::filesystem::file_size(path));
}

void readDescription(benchmark::State& state)
{
    Workspace workspace;
    measureReading(state, [&](const std::string& path) { workspace.readArchive(path); });
}

std::string bytesOf(const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
    std::string bytes(std::filesystem::file_size(path), '\0');
    if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) {
        throw std::runtime_error("cannot read " + path);
    }
    return bytes;
}

// What is copied of an entry.
struct Record {
    std::string texts[4];           // name, version, boardType, targetPath
    std::uint64_t numbers[4] = {};  // sequence, checksumCrc32, id, swCompatibilityId
};

constexpr const char* textNames[] = {"name", "version", "boardType", "targetPath"};
constexpr const char* numberNames[] = {"sequence", "checksumCrc32", "id", "swCompatibilityId"};

using ReadRecords = std::vector<Record> (*)(const std::string& bytes);

template <ReadRecords readRecords>
void readByRival(benchmark::State& state)
{
    measureReading(state, [&](const std::string& path) {
        if (readRecords(bytesOf(path)).size() != sizeOf(state)) {
            throw std::runtime_error("not all entries were read");
        }
    });
}

std::vector<Record> readWithNlohmann(const std::string& bytes)
{
    const auto document = nlohmann::json::parse(bytes);
    std::vector<Record> records;
    for (const auto& file : document["files"]) {
        Record& record = records.emplace_back();
        for (std::size_t i = 0; i < 4; ++i) {
            if (const auto text = file.find(textNames[i]); text != file.end() && text->is_string()) {
                record.texts[i] = text->get<std::string>();
            }
            if (const auto number = file.find(numberNames[i]); number != file.end() && number->is_number()) {
                record.numbers[i] = number->get<std::uint64_t>();
            }
        }
    }
    return records;
}

std::vector<Record> readWithRapidjson(const std::string& bytes)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(bytes.c_str());
    std::vector<Record> records;
    for (const auto& file : document["files"].GetArray()) {
        Record& record = records.emplace_back();
        for (std::size_t i = 0; i < 4; ++i) {
            if (const auto text = file.FindMember(textNames[i]); text != file.MemberEnd() && text->value.IsString()) {
                record.texts[i].assign(text->value.GetString(), text->value.GetStringLength());
            }
            if (const auto number = file.FindMember(numberNames[i]);
                number != file.MemberEnd() && number->value.IsUint64()) {
                record.numbers[i] = number->value.GetUint64();
            }
        }
    }
    return records;
}

std::vector<Record> readWithSimdjson(const std::string& bytes)
{
    simdjson::dom::parser parser;
    const simdjson::dom::element document = parser.parse(bytes);
    std::vector<Record> records;
    for (const simdjson::dom::element file : document["files"].get_array()) {
        Record& record = records.emplace_back();
        for (std::size_t i = 0; i < 4; ++i) {
            std::string_view text;
            if (file[textNames[i]].get(text) == simdjson::SUCCESS) {
                record.texts[i] = text;
            }
            std::uint64_t number = 0;
            if (file[numberNames[i]].get(number) == simdjson::SUCCESS) {
                record.numbers[i] = number;
            }
        }
    }
    return records;
}

void readBytes(benchmark::State& state)
{
    measureReading(state, [](const std::string& path) { benchmark::DoNotOptimize(bytesOf(path)); });
}

constexpr auto sizes = {1000, 10000, 100000};

const auto* const own = measure("description-read", readDescription, sizes);
const auto* const nlohmann = measure("description-read-nlohmann", readByRival<readWithNlohmann>, sizes);
const auto* const rapid = measure("description-read-rapidjson", readByRival<readWithRapidjson>, sizes);
const auto* const simd = measure("description-read-simdjson", readByRival<readWithSimdjson>, sizes);
const auto* const bytesAlone = measure("description-read-fread", readBytes, sizes);

}  // namespace
