// Reading an archive's description; beside it what parsers take that know nothing of the format, which then only copy
// eight members of each entry, and what reading the file's bytes takes. Destruction is part of it.
#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <simdjson.h>

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "Workspace.h"
#include "archive/ZoCUpdateArchive.h"

namespace {

// One of 40 board types; one entry of five has board objects, one of fifty is a file on the flash drive.
nlohmann::json entry(unsigned i)
{
    const std::string number = std::to_string(i);
    const std::string type = "KR" + std::to_string(5000 + i % 40);
    nlohmann::json members = {{"name", "firmware/board-" + std::to_string(i % 40) + "/image-" + number + ".bin"},
                              {"sequence", i % 10 + 1},
                              {"version", "23." + std::to_string(i % 7) + "." + std::to_string(i % 50)},
                              {"checksumCrc32", i * 2654435761U}};
    if (i % 5 == 0) {
        members["boards"] = {{{"boardType", type}, {"id", i}, {"boardVariant", nullptr}},
                             {{"boardType", {type + "-A", type + "-B"}},
                              {"id", i},
                              {"hwCompatibilityId", {1, 2, 3}},
                              {"boardId", {i, i + 1}}}};
    } else if (i % 50 == 1) {
        members["boardType"] = type;
        members["targetPath"] = "/opt/application/file-" + number + ".cfg";
    } else {
        members["boardType"] = type;
        members["id"] = i;
        members["boardVariant"] = "V" + std::to_string(i % 3);
        members["hwCompatibilityId"] = {1, 2, 3};
        members["swCompatibilityId"] = {i % 5};
    }
    return members;
}

// The file with the description of an archive of so many entries, as people write it: with indentation.
std::string write(const Workspace& workspace, std::int64_t count)
{
    nlohmann::json entries = nlohmann::json::array();
    for (unsigned i = 0; i < static_cast<unsigned>(count); ++i) {
        entries.push_back(entry(i));
    }
    return workspace.write("archive.json", descriptionOf(std::move(entries)).dump(2).c_str());
}

void descriptionRead(benchmark::State& state)
{
    Workspace workspace;
    const std::string path = write(workspace, state.range(0));
    ZoCUpdateArchive& archive = workspace.updater().getArchive();
    for ([[maybe_unused]] auto iteration : state) {
        if (!archive.readDescriptionFileJson(workspace.errors(), path)) {
            throw std::runtime_error("the archive description is not valid");
        }
    }
    state.SetComplexityN(state.range(0));
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

// A rival: `readRecords` gives the records of the description in `bytes`.
template <class ReadRecords>
void rival(benchmark::State& state, ReadRecords readRecords)
{
    Workspace workspace;
    const std::string path = write(workspace, state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        const std::vector<Record> records = readRecords(bytesOf(path));
        if (records.size() != static_cast<std::size_t>(state.range(0))) {
            throw std::runtime_error("not all entries were read");
        }
    }
    state.SetComplexityN(state.range(0));
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

void descriptionReadFread(benchmark::State& state)
{
    Workspace workspace;
    const std::string path = write(workspace, state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        benchmark::DoNotOptimize(bytesOf(path));
    }
    state.SetComplexityN(state.range(0));
}

void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Complexity();
}

}  // namespace

BENCHMARK(descriptionRead)->Name("description-read")->Apply(sizes);
BENCHMARK_CAPTURE(rival, nlohmann, readWithNlohmann)->Name("description-read-nlohmann")->Apply(sizes);
BENCHMARK_CAPTURE(rival, rapidjson, readWithRapidjson)->Name("description-read-rapidjson")->Apply(sizes);
BENCHMARK_CAPTURE(rival, simdjson, readWithSimdjson)->Name("description-read-simdjson")->Apply(sizes);
BENCHMARK(descriptionReadFread)->Name("description-read-fread")->Apply(sizes);
