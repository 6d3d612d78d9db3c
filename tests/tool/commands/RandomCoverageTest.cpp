// What coverage tells of many targets is what single comparisons tell, over archives and targets at random.
#include <gtest/gtest.h>

#include <algorithm>
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
            ordered_json parameters = {{"PRODUCT/BOARD_TYPE", boardType()}, {"PRODUCT/SERIAL_NUMBER", below(3) + 1}};
            if (chance(3)) {
                parameters["PRODUCT/SERIAL_NUMBER"] = 16777232;  // displayed as 16(1)
            }
            if (!chance(3)) {
                parameters["PRODUCT/ID"] = below(3);
            }
            const std::string place = i == 0 && chance(2) ? "HCN" : "IOMODULE[" + std::to_string(i + 1) + "]";
            boards.push_back(board(place, parameters, elements()));
        }
        return ::target(boards);
    }

    // Of the tool, the same for all targets. Some filters go by what is displayed, and some select nothing.
    std::vector<std::string> options()
    {
        std::vector<std::string> words;
        const auto sometimes = [&](unsigned oneOf, const std::vector<std::string>& more) {
            if (chance(oneOf)) {
                words.insert(words.end(), more.begin(), more.end());
            }
        };
        const auto pick = [&](const std::vector<std::string>& values) {
            return values[below(static_cast<unsigned>(values.size()))];
        };
        sometimes(3, {"--disable-custom-elements"});
        sometimes(3, {"--force"});
        sometimes(3, {"--configuration"});
        sometimes(6, {"--no-check"});
        sometimes(2, {"--exclude", "0", "--exclude", std::to_string(1 + below(4))});
        sometimes(3, {"--board-types", pick({"B0", "B1", "B0, B1", "B2"})});
        sometimes(3, {"--serial-numbers", pick({"1", "2,3", "16(1)", "16777232 1", "4"})});
        sometimes(3, {"--element-names", pick({"UserFirmware", "UserFpga E2", "Firmware", "FPGA,E3", "E5"})});
        return words;
    }

private:
    std::string boardType() { return "B" + std::to_string(below(2)); }
    std::string version() { return std::to_string(below(3) + 1) + ".0"; }

    std::vector<ordered_json> elements()
    {
        std::vector<ordered_json> result;
        const unsigned count = below(5);
        for (unsigned i = 1; i <= count; ++i) {
            const std::string name = i == 1 ? "UserFirmware" : i == 2 ? "UserFpga" : "E" + std::to_string(i);
            ordered_json parameters = {{"NAME", name}, {"VERSION", version()}};
            if (chance(6)) {
                parameters["CONFIGURATION"] = 1;
            }
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
    std::vector<ordered_json> supported;                  // of each target; null where a dry run cannot tell
    std::map<std::string, unsigned> files;                // elements by the name of their update file
    std::map<std::string, std::pair<unsigned, std::set<std::size_t>>> noFile;
    std::map<std::string, std::pair<unsigned, std::set<std::string>>> kinds;  // elements and names of their files

    void add(const ordered_json& comparison)
    {
        std::map<std::string, unsigned> states;
        for (const ordered_json& element : comparison["elements"]) {
            ++states[element["state"]];
            auto& [elementsOfKind, filesOfKind] = kinds[element["keys"].dump()];
            ++elementsOfKind;
            if (element["updateFile"].is_string()) {
                filesOfKind.insert(element["updateFile"]);
            }
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

void expectKinds(const ordered_json& document, const Tally& tally)
{
    ASSERT_EQ(document["kinds"].size(), tally.kinds.size());
    for (const ordered_json& kind : document["kinds"]) {
        const auto found = tally.kinds.find(kind["keys"].dump());
        ASSERT_NE(found, tally.kinds.end()) << kind;
        EXPECT_EQ(kind["elements"], found->second.first);
        std::set<std::string> files;
        for (const ordered_json& entry : kind["files"]) {
            files.insert("file-" + entry.dump() + ".bin");
        }
        EXPECT_EQ(files, found->second.second);
    }
}

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

// How often what is compared has content.
struct Seen {
    unsigned elements = 0;
    unsigned filtered = 0;  // elements that the options leave out
    unsigned excluded = 0;  // targets that have such elements
    unsigned supported = 0;
    unsigned refused = 0;
};

class RandomCoverage : public testing::Test {
protected:
    static ordered_json told(std::vector<std::string> words, const std::vector<std::string>& options)
    {
        words.insert(words.end(), options.begin(), options.end());
        return ordered_json::parse(ran(words).out);
    }

    // What single runs tell of the target in this file.
    void add(Tally& tally, const std::string& archive, const std::string& path, const std::vector<std::string>& options)
    {
        const std::vector<std::string> compare{"compare", archive, "--target", path, "--json"};
        const ordered_json comparison = told(compare, options);
        ASSERT_TRUE(comparison.contains("elements")) << comparison;
        tally.add(comparison);
        const ordered_json dryRun = told({"update", archive, "--target", path, "--json", "--dry-run"}, options);
        tally.supported.push_back(dryRun.contains("supported") ? dryRun["supported"] : ordered_json());

        const auto all = told(compare, {"--configuration"})["elements"].size();
        seen.elements += static_cast<unsigned>(comparison["elements"].size());
        seen.filtered +=
            static_cast<unsigned>(std::max(all, comparison["elements"].size()) - comparison["elements"].size());
        seen.excluded += tally.counts.back().contains("excluded") ? 1 : 0;
    }

    void expectSupport(const ordered_json& document, const Tally& tally)
    {
        for (std::size_t i = 0; i < tally.supported.size(); ++i) {
            if (!tally.supported[i].is_null()) {
                EXPECT_EQ(document["targets"][i]["supported"], tally.supported[i]);
                ++(tally.supported[i] ? seen.supported : seen.refused);
            }
        }
    }

    Seen seen;
};

}  // namespace

TEST_F(RandomCoverage, TellsWhatSingleComparisonsTell)
{
    for (unsigned seed = 0; seed < 150 && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        World world(seed);
        const TestArchive archive(world.archive());
        const TempDir folder;
        Tally tally;
        const std::vector<std::string> options = world.options();
        for (unsigned i = 0; i < 5; ++i) {
            const std::string path = (folder.path() / (std::to_string(i) + ".json")).string();
            writeText(path, world.target().dump());
            add(tally, archive.path(), path, options);
        }
        std::vector<std::string> words = {"coverage", archive.path(), folder.path().string(), "--json"};
        words.insert(words.end(), options.begin(), options.end());
        const RunResult result = ran(words);
        EXPECT_EQ(result.status, 0);
        const ordered_json document = conformingDocument(result.out);
        expectTally(document, tally);
        expectKinds(document, tally);
        expectSupport(document, tally);
    }
    EXPECT_GT(seen.elements, 500u);
    EXPECT_GT(seen.filtered, 100u);
    EXPECT_GT(seen.excluded, 10u);
    EXPECT_GT(seen.supported, 50u);
    EXPECT_GT(seen.refused, 20u);
}
