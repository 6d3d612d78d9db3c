// Commands tell the same of a record as of the target: over targets at random, each replaced by its own record.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "libZoErrorHandling/ZoCErrorManager.h"
#include "support/Difference.h"
#include "support/RandomTarget.h"
#include "support/SimulatedTarget.h"
#include "support/TargetBuilder.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/CommandLine.h"

namespace {

using nlohmann::ordered_json;
using Lines = std::vector<std::string>;

constexpr unsigned targetsPerTest =
#ifdef __SANITIZE_ADDRESS__
    20;
#else
    170;
#endif

const ordered_json allTypes{"KR5120", "KR5140", "AI8100", ""};
const ordered_json allVariants{nullptr, "red", "blue"};
const ordered_json few{0, 1, 2};

ordered_json entryFor(const std::string& name, ordered_json stated)
{
    ordered_json entry{{"boardType", allTypes},
                       {"boardVariant", allVariants},
                       {"boardId", few},
                       {"hwCompatibilityId", few},
                       {"swCompatibilityId", few}};
    entry.update(stated);
    return fileEntry(name, entry);
}

// An archive that has something for everything, or else for some only.
class RecordedArchive {
public:
    explicit RecordedArchive(bool complete) : archive(description(entries(complete)))
    {
        for (const char* const name : {"old", "some", "file", "new"}) {
            archive.addFile(name, "content");
        }
    }

    std::string path() const { return archive.path(); }

private:
    static std::vector<ordered_json> entries(bool complete)
    {
        constexpr unsigned crc32OfContent = 4274335913u;
        std::vector<ordered_json> entries{entryFor(
            "old",
            {{"id", 1}, {"version", "0.9"}, {"mode", "upgrade"}, {"boardId", 0}, {"checksumCrc32", crc32OfContent}})};
        for (const unsigned id : {0u, 1u, 2u, 3u, 4294967295u}) {
            entries.push_back(entryFor("some", {{"id", id},
                                                {"boardType", complete ? allTypes : ordered_json{"KR5120", "AI8100"}},
                                                {"version", "23.2"},
                                                {"sequence", 2},
                                                {"checksumCrc32", crc32OfContent}}));
        }
        entries.push_back(entryFor("file", {{"targetPath", complete ? "etc/settings" : "etc/others"},
                                            {"version", nullptr},
                                            {"checksumCrc32", crc32OfContent}}));
        entries.push_back(
            entryFor("new", {{"targetPath", "new/file"}, {"version", nullptr}, {"checksumCrc32", crc32OfContent}}));
        return entries;
    }

    TestArchive archive;
};

// How often what is compared has content.
struct SeenOfRecords {
    unsigned compared = 0;
    unsigned explained = 0;
    unsigned planned = 0;
    unsigned updates = 0;
    unsigned withoutFile = 0;

    void note(const std::vector<std::string>& words, const RunResult& result)
    {
        if (result.status != 0 || words.back() != "--json") {
            return;
        }
        compared += words.front() == "compare" ? 1 : 0;
        explained += words.front() == "explain" && result.out.find("\"candidates\"") != std::string::npos ? 1 : 0;
        planned += words.front() == "update" ? 1 : 0;
        updates += result.out.find("\"state\": \"update\"") != std::string::npos ? 1 : 0;
        withoutFile += result.out.find("\"state\": \"noFile\"") != std::string::npos ? 1 : 0;
    }
};

class RecordedTargets : public testing::TestWithParam<unsigned> {
protected:
    // What all commands print of the target as it is now, and how they end.
    std::string told(const Lines& options)
    {
        const std::vector<Lines> commands{{"installed"},
                                          {"installed", "--json"},
                                          {"installed", "--verbose"},
                                          {"compare", archive->path()},
                                          {"compare", archive->path(), "--json"},
                                          {"explain", archive->path()},
                                          {"explain", archive->path(), "--json"},
                                          {"update", archive->path(), "--dry-run"},
                                          {"update", archive->path(), "--dry-run", "--json"},
                                          {"reboot-support"}};
        std::ostringstream all;
        for (Lines words : commands) {
            words.insert(words.begin() + 1, options.begin(), options.end());
            ZoCErrorManager::getSingleton()->getMasterErrorList().clear();  // as in a new process
            const RunResult result = ran(words);
            seen.note(words, result);
            all << words.front() << ' ' << words.back() << " ends with " << result.status << '\n'
                << result.out << "errors:\n"
                << result.err << '\n';
        }
        return all.str();
    }

    static Lines optionsOf(RandomTarget& random)
    {
        const std::vector<Lines> choices{{},
                                         {},
                                         {},
                                         {"--configuration"},
                                         {"--disable-custom-elements", "--no-check"},
                                         {"--element-names", "UserFirmware, Settings"},
                                         {"--board-types", "KR5120"},
                                         {"--serial-numbers", "15(1) 7,2"},
                                         {"--no-check", "--serial-numbers", "1", "--element-names", "UserFpga"},
                                         {"--exclude", "0", "--exclude", "2"}};
        return random.pick(choices);
    }

    static std::string expectedLines(const Lines& unreadable)
    {
        std::string lines;
        for (const std::string& name : unreadable) {
            lines += "trellan-update: left out: " + name + ":\n";
        }
        return lines;
    }

    // The lines without their reasons.
    static std::string withoutReasons(const std::string& err)
    {
        std::istringstream stream(err);
        std::string lines;
        for (std::string line; std::getline(stream, line);) {
            lines += line.substr(0, line.rfind(": ") + 1) + "\n";
        }
        return lines;
    }

    void replaceByRecord(const SimulatedTarget& device, const RandomTarget::Made& made)
    {
        writeText(device.path(), made.target.dump());
        const RunResult record = ran({"record"});
        writeText(device.path(), record.out);
        EXPECT_EQ(record.status, made.unreadable.empty() ? 0 : 1);
        EXPECT_EQ(sorted(withoutReasons(record.err)), sorted(expectedLines(made.unreadable)));
    }

    static Lines sorted(const std::string& text)
    {
        std::istringstream stream(text);
        Lines lines;
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }

    void compareTargets(bool faulty)
    {
        SimulatedTarget device(target({}));
        for (unsigned i = 0; i < targetsPerTest && !HasFailure(); ++i) {
            RandomTarget random(GetParam() * 10'000 + i, faulty);
            const RandomTarget::Made made = random.make();
            archive = &(random.oneIn(3) ? someThings : everything);
            const Lines options = optionsOf(random);
            writeText(device.path(), made.readable.dump());
            const std::string expected = told(options);
            replaceByRecord(device, made);
            ASSERT_EQ(difference(expected, told(options)), "") << made.target.dump(1);
            EXPECT_EQ(ran({"record"}).out, readText(device.path()));
        }
        EXPECT_GT(seen.compared, targetsPerTest / 2);
        EXPECT_GT(seen.explained, targetsPerTest / 4);
        EXPECT_GT(seen.planned, targetsPerTest / 10);
        EXPECT_GT(seen.updates, targetsPerTest / 4);
        EXPECT_GT(seen.withoutFile, targetsPerTest / 4);
    }

    const RecordedArchive everything{true};
    const RecordedArchive someThings{false};
    const RecordedArchive* archive = nullptr;
    SeenOfRecords seen;
};

}  // namespace

TEST_P(RecordedTargets, AreToldOfLikeTheTargetsThemselves)
{
    compareTargets(false);
}

TEST_P(RecordedTargets, AreToldOfLikeTheTargetsWithoutWhatCannotBeRead)
{
    compareTargets(true);
}

INSTANTIATE_TEST_SUITE_P(Some, RecordedTargets, testing::Values(1U, 2U, 3U),
                         [](const auto& info) { return std::to_string(info.param); });
