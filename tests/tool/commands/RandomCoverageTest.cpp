// What coverage tells of many targets is what single comparisons tell, over archives and targets at random.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

class World {
public:
    explicit World(unsigned seed) : generator(seed) {}

    bool chance(unsigned oneOf) { return below(oneOf) == 0; }
    unsigned below(unsigned end) { return std::uniform_int_distribution<unsigned>(0, end - 1)(generator); }

    ordered_json archive()
    {
        std::vector<ordered_json> entries;
        const unsigned count = below(8);
        for (unsigned i = 0; i < count; ++i) {
            ordered_json more = {{"boardType", boardType()}, {"version", version()}, {"checksumCrc32", below(2)}};
            if (chance(4)) {
                more["targetPath"] = "file" + std::to_string(below(2));
            } else {
                more["id"] = below(3);
            }
            if (chance(3)) {
                more["boardId"] = {below(2), 2};
            }
            if (chance(8)) {
                more["featureLevel"] = 99;
            }
            if (chance(5)) {
                more["mode"] = "upgrade";
            }
            entries.push_back(fileEntry("file-" + std::to_string(i) + ".bin", more));
        }
        return description(entries);
    }

    ordered_json target()
    {
        std::vector<ordered_json> boards;
        const unsigned count = below(4);
        for (unsigned i = 0; i < count; ++i) {
            ordered_json parameters = {{"PRODUCT/BOARD_TYPE", boardType()}};
            if (!chance(3)) {
                parameters["PRODUCT/ID"] = below(3);
            }
            const std::string place = i == 0 && chance(2) ? "HCN" : "IOMODULE[" + std::to_string(i + 1) + "]";
            boards.push_back(board(place, parameters, elements()));
        }
        return ::target(boards);
    }

private:
    std::string boardType() { return "B" + std::to_string(below(2)); }
    std::string version() { return std::to_string(below(3) + 1) + ".0"; }

    std::vector<ordered_json> elements()
    {
        std::vector<ordered_json> result;
        const unsigned count = below(5);
        for (unsigned i = 1; i <= count; ++i) {
            ordered_json parameters = {{"NAME", "E" + std::to_string(i)}, {"VERSION", version()}};
            if (chance(2)) {
                parameters["CHECKSUM_CRC32"] = below(2);
            }
            if (chance(4)) {
                parameters["CUSTOM"] = 1;
            }
            if (chance(4)) {
                parameters["LOCATION"] = "file" + std::to_string(below(2));
                result.push_back(fileElement(i, parameters));
            } else {
                parameters["ID"] = below(3);
                result.push_back(updateElement(i, parameters));
            }
        }
        return result;
    }

    std::mt19937 generator;
};

// What the documents of single comparisons come to.
struct Tally {
    std::vector<std::map<std::string, unsigned>> counts;  // of each target
    std::map<std::string, unsigned> files;                // elements by the name of their update file
    std::map<std::string, std::pair<unsigned, std::set<std::size_t>>> noFile;

    void add(const ordered_json& comparison)
    {
        std::map<std::string, unsigned> states;
        for (const ordered_json& element : comparison["elements"]) {
            ++states[element["state"]];
            if (element["updateFile"].is_null()) {
                auto& [elements, targets] = noFile[element["keys"].dump()];
                ++elements;
                targets.insert(counts.size());
            } else {
                ++files[element["updateFile"]];
            }
        }
        counts.push_back(states);
    }
};

void expectTally(const ordered_json& document, const Tally& tally)
{
    for (std::size_t i = 0; i < tally.counts.size(); ++i) {
        std::map<std::string, unsigned> states;
        for (const auto& [state, count] : document["targets"][i]["counts"].items()) {
            if (count != 0) {
                states[state] = count;
            }
        }
        EXPECT_EQ(states, tally.counts[i]);
        std::map<std::string, unsigned> ofKinds;
        for (const ordered_json& kind : document["targets"][i]["kinds"]) {
            for (const auto& [state, count] : kind["counts"].items()) {
                ofKinds[state] += count.get<unsigned>();
            }
        }
        EXPECT_EQ(ofKinds, tally.counts[i]);
    }
    std::map<std::string, unsigned> files;
    std::size_t unused = 0;
    for (const ordered_json& file : document["files"]) {
        if (file["elements"] != 0) {
            files[file["name"]] = file["elements"];
        } else {
            EXPECT_EQ(document["unused"].at(unused++), file["file"]);
        }
    }
    EXPECT_EQ(files, tally.files);
    EXPECT_EQ(document["unused"].size(), unused);
    ASSERT_EQ(document["noFile"].size(), tally.noFile.size());
    for (const ordered_json& group : document["noFile"]) {
        const auto found = tally.noFile.find(group["keys"].dump());
        ASSERT_NE(found, tally.noFile.end()) << group;
        EXPECT_EQ(group["elements"], found->second.first);
        EXPECT_EQ(group["targets"], found->second.second.size());
    }
}

}  // namespace

TEST(RandomCoverage, TellsWhatSingleComparisonsTell)
{
    unsigned elements = 0;
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        World world(seed);
        const TestArchive archive(world.archive());
        const TempDir folder;
        Tally tally;
        std::vector<std::string> words = {"coverage", archive.path(), folder.path().string(), "--json"};
        std::vector<std::string> options;
        if (world.chance(3)) {
            options.emplace_back("--disable-custom-elements");
        }
        if (world.chance(3)) {
            options.emplace_back("--force");
        }
        for (unsigned i = 0; i < 5; ++i) {
            const std::string path = (folder.path() / (std::to_string(i) + ".json")).string();
            writeText(path, world.target().dump());
            std::vector<std::string> compare = {"compare", archive.path(), "--target", path, "--json"};
            compare.insert(compare.end(), options.begin(), options.end());
            const ordered_json comparison = ordered_json::parse(ran(compare).out);
            ASSERT_TRUE(comparison.contains("elements")) << comparison;
            elements += static_cast<unsigned>(comparison["elements"].size());
            tally.add(comparison);
        }
        words.insert(words.end(), options.begin(), options.end());
        const RunResult result = ran(words);
        EXPECT_EQ(result.status, 0);
        expectTally(conformingDocument(result.out), tally);
        if (HasFailure()) {
            return;
        }
    }
    EXPECT_GT(elements, 500u);
}
