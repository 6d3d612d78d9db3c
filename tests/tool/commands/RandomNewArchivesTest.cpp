// Archives that are begun for targets by chance: each element of the target is given the entry with its keys.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "support/BuildTree.h"
#include "support/JsonSchema.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

using nlohmann::json;
using nlohmann::ordered_json;

namespace {

constexpr const char* listedKeys[] = {"boardVariant", "boardId", "hwCompatibilityId", "swCompatibilityId"};

// Targets of few values, so that elements often agree in some of them.
class RandomTargets {
public:
    explicit RandomTargets(unsigned seed) : random(seed) {}

    ordered_json next()
    {
        std::vector<ordered_json> modules;
        for (unsigned count = below(7), i = 1; i <= count; ++i) {
            modules.push_back(makeBoard("IOMODULE[" + std::to_string(i) + "]"));
        }
        if (below(2) == 0) {
            modules.push_back(makeBoard("CN"));
        }
        return target({makeBoard("HCN", modules)});
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random() % limit); }

    template <typename Value, std::size_t Count>
    Value pick(const Value (&values)[Count])
    {
        return values[below(Count)];
    }

    ordered_json makeBoard(const std::string& id, const std::vector<ordered_json>& items = {})
    {
        constexpr const char* types[] = {"A", "A", "B", "B 2", "", "\xC3\xA4"};
        constexpr const char* variants[] = {"", "v", "w", "null"};
        ordered_json parameters = {{"PRODUCT/BOARD_TYPE", pick(types)}, {"PRODUCT/VARIANT", pick(variants)}};
        if (below(2) == 0) {
            parameters["PRODUCT/ID"] = below(3);
        }
        std::vector<ordered_json> elements;
        for (unsigned count = 1 + below(4), i = 1; i <= count; ++i) {
            elements.push_back(makeElement(i));
        }
        return board(id, parameters, elements, items);
    }

    ordered_json makeElement(unsigned index)
    {
        constexpr const char* names[] = {"Firmware", "Fpga", "F/w", ""};
        constexpr const char* paths[] = {"a", "b/a", "new-file", "*"};
        ordered_json parameters = {{"NAME", pick(names)}, {"CONFIGURATION", 0}};
        if (below(2) == 0) {
            parameters["HW_COMPATIBILITY_ID"] = below(3);
        }
        if (below(3) == 0) {
            parameters["SW_COMPATIBILITY_ID"] = below(2);
        }
        if (below(3) == 0) {
            parameters["VERSION"] = "1." + std::to_string(below(3));
        }
        if (below(4) == 0) {
            parameters["LOCATION"] = pick(paths);
            return fileElement(index, parameters);
        }
        parameters["ID"] = below(3);
        return updateElement(index, parameters);
    }

    std::mt19937 random;
};

std::set<json> asSet(const json& stated)
{
    return stated.is_array() ? stated.get<std::set<json>>() : std::set<json>{stated};
}

bool takesAnyPath(const json& keys)
{
    return keys["targetPath"] == "*";
}

// By the keys alone; an element that takes any path fits each file of its boards.
bool fits(const json& entry, const json& keys)
{
    for (const char* const key : listedKeys) {
        if (!asSet(entry[key]).contains(keys[key])) {
            return false;
        }
    }
    const bool isTheElement = takesAnyPath(keys) ? entry.contains("targetPath")
                                                 : entry.value("id", json()) == keys["id"] &&
                                                       entry.value("targetPath", json()) == keys["targetPath"];
    return entry["boardType"] == keys["boardType"] && isTheElement;
}

// The combinations of keys that the elements of an entry have must be all that it fits.
std::size_t combinations(const json& entry)
{
    std::size_t count = 1;
    for (const char* const key : listedKeys) {
        count *= asSet(entry[key]).size();
    }
    return count;
}

class RandomNewArchives : public testing::Test {
protected:
    // What the target has, and what it is given of the archive that was begun for it.
    void begin(const ordered_json& document)
    {
        const SimulatedTarget device(document);
        const TempDir folder;
        const std::string archive = (folder.path() / "fw").string();
        ASSERT_EQ(ran({"new", archive}).status, 0);
        const RunResult compared = ran({"compare", "--json", archive});
        ASSERT_EQ(compared.status, 0) << compared.err;
        elements = json::parse(compared.out)["elements"];
        const json description = json::parse(readText(archive + "/archive.json"));
        EXPECT_TRUE(schema.violations(description).empty());
        entries = description["files"];
        findings = json::parse(ran({"check", "--json", archive}).out)["findings"];
    }

    void expectTheEntryOfItsKeysForEachElement() const
    {
        for (const json& element : elements) {
            std::vector<std::string> fitting;
            for (const json& entry : entries) {
                if (fits(entry, element["keys"])) {
                    fitting.push_back(entry["name"]);
                }
            }
            ASSERT_FALSE(fitting.empty()) << element;
            EXPECT_EQ(element["updateFile"], fitting.front()) << element;
            EXPECT_TRUE(fitting.size() == 1 || takesAnyPath(element["keys"])) << element;
        }
    }

    void expectNoEntryThatFitsMore() const
    {
        std::set<std::string> names;
        for (const json& entry : entries) {
            std::set<json> keys;
            for (const json& element : elements) {
                if (element["updateFile"] == entry["name"]) {
                    keys.insert(element["keys"]);
                }
            }
            EXPECT_EQ(keys.size(), combinations(entry)) << entry;
            EXPECT_TRUE(names.insert(entry["name"]).second) << entry;
        }
    }

    void expectNothingFoundButMissingFiles() const
    {
        EXPECT_EQ(findings.size(), entries.size());
        for (const json& finding : findings) {
            EXPECT_EQ(finding["rule"], "missing-file") << finding;
        }
    }

    const JsonSchema schema{json::parse(readText(TRELLAN_SOURCE_DIR "/docs/archive.schema.json"))};
    json elements;
    json entries;
    json findings;
};

}  // namespace

TEST_F(RandomNewArchives, GiveEachElementTheEntryOfItsKeysAndNoOther)
{
    RandomTargets targets(20240317);
    std::size_t shared = 0, arrays = 0, anyPaths = 0;
    for (unsigned i = 0; i < 150 && !HasFailure(); ++i) {
        const ordered_json document = targets.next();
        SCOPED_TRACE(document.dump());
        begin(document);
        if (HasFatalFailure()) {
            return;
        }
        expectTheEntryOfItsKeysForEachElement();
        expectNoEntryThatFitsMore();
        expectNothingFoundButMissingFiles();
        shared += elements.size() - entries.size();
        for (const json& entry : entries) {
            arrays += combinations(entry) > 1;
            anyPaths += entry.value("targetPath", "").starts_with("new-file-");
        }
    }
    EXPECT_GT(shared, 100u);
    EXPECT_GT(arrays, 50u);
    EXPECT_GT(anyPaths, 20u);
}
