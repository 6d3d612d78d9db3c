// Descriptions that were damaged by chance: cut, with single bits flipped, with pieces exchanged. Each is read as a
// judge of its own reads it, or refused with exactly one message.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <random>
#include <regex>

#include "DescriptionJudge.h"
#include "ZoITrellanInspector.h"
#include "archive/ZoCUpdateArchive.h"
#include "support/BuildTree.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/Process.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "support/UpdateFiles.h"

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr unsigned oneOf = 10;  // of the damages, under the sanitizers
#else
constexpr unsigned oneOf = 1;
#endif

const std::string sound = R"({"info":{"formatVersion":"1.0","archiveVersion":"23.2","productName":"Example line",
"archiveName":"Example firmware","archiveVariant":"lean"},"files":[
{"name":"a.bin","sequence":1,"boardType":"KR5120","id":1,"version":"23.2"},
{"name":"b.bin","sequence":1,"boardType":"KR5120","id":2,"version":null,"checksumCrc32":3585764214},
{"name":"c.bin","sequence":2,"boardType":["AI8100","AI8200"],"id":3,"boardVariant":null,"checksumCrc32":1},
{"name":"d.bin","sequence":2,"boardType":"AO1","id":1,"boardVariant":["24 V",null],"boardId":[0,7],"checksumCrc32":2},
{"name":"e.bin","sequence":3,"boardType":"CN7210","id":4,"hwCompatibilityId":[1,2],"swCompatibilityId":3,"checksumCrc32":3},
{"name":"f.cfg","sequence":3,"boardType":"CN7210","targetPath":"config/site.cfg","mode":"upgrade","checksumCrc32":4},
{"name":"g.bin","sequence":4,"boards":[{"boardType":"X","id":5},{"boardType":["Y","Z"],"boardId":1,"id":6}],"checksumCrc32":5},
{"name":"h.bin","sequence":5,"id":7,"boards":[{"boardType":"W"}],"mode":"standard","checksumCrc32":6},
{"name":"i.bin","sequence":6,"boardType":"V","id":8,"featureLevel":2,"version":"1.2b3","checksumCrc32":7,"note":{"by":"me"}},
{"name":"j.bin","sequence":7,"boardType":"V","id":9,"featureLevel":3}]}
)";

// A file in memory, as a description.
class MemoryFile {
public:
    MemoryFile() : file(::memfd_create("description", MFD_CLOEXEC)) {}
    ~MemoryFile() { ::close(file); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void hold(const std::string& text) const
    {
        ASSERT_EQ(::ftruncate(file, 0), 0);
        ASSERT_EQ(::pwrite(file, text.data(), text.size(), 0), static_cast<ssize_t>(text.size()));
    }

    // From any folder.
    std::string name() const { return "../../../../../../../../proc/self/fd/" + std::to_string(file); }

private:
    const int file;
};

class DamagedDescriptions : public testing::Test {
protected:
    DamagedDescriptions()
    {
        UpdateFiles::BinaryHeader header;
        header.checksum = 4711;
        for (const char* const name : {"a.bin", "b.bin", "c.bin"}) {
            archive.addFile(name, UpdateFiles::binaryFile(header, 64));
        }
    }

    // Reads `text` as the description, and holds what comes of it against the judge.
    void judgeReading(const std::string& text)
    {
        description.hold(text);
        ZoNTrellanUpdater::ZoTOptions options;
        options.archivePath = archive.path();
        options.descriptionFileName = description.name();
        options.command = ZoNTrellanUpdater::ARCHIVE_VERSION;
        OpenUpdater updater(options);
        const MessageCapture messages(updater);
        const unsigned result = updater.apply();
        const auto expected = judge(text, archive.path());
        if (expected) {
            ++accepted;
            EXPECT_EQ(result, 0u) << messages.text() << text;
            expectArchive(updater, *expected, text);
        } else {
            ++refused;
            EXPECT_EQ(result, 1u) << text;
            expectOneMessage(messages.fragments(), text);
        }
    }

    TestArchive archive{sound};
    MemoryFile description;
    unsigned accepted = 0;
    unsigned refused = 0;

private:
    static void expectOneMessage(std::vector<std::string> said, const std::string& text)
    {
        std::erase_if(said, [](const std::string& piece) { return !piece.starts_with("ERROR: "); });
        ASSERT_EQ(said.size(), 2u) << text;
        EXPECT_EQ(said.back(), "ERROR: Failed to read firmware archive.\n");
    }

    static void expectArchive(OpenUpdater& updater, const JudgedArchive& expected, const std::string& text)
    {
        const ZoCUpdateArchive& read = updater.getArchive();
        std::string name, version, product, format, variant;
        read.getInfo(name, version, product, format, variant);
        EXPECT_EQ(name, expected.name) << text;
        EXPECT_EQ(ZoCVersion(version.c_str()).getAsULong64(), expected.version) << text;
        EXPECT_EQ(product, expected.product) << text;
        EXPECT_EQ(ZoCVersion(format.c_str()).getAsULong64(), expected.format) << text;
        EXPECT_EQ(variant, expected.variant) << text;
        EXPECT_EQ(read.getUnsupportedElements(), expected.passedOver) << text;
        EXPECT_TRUE(filesOf(updater) == expected.files) << text;
    }

    static std::vector<JudgedFile> filesOf(OpenUpdater& updater)
    {
        const std::unique_ptr<ZoITrellanInspector> inspector(ZoITrellanInspector::createInstance(updater));
        std::vector<JudgedFile> files;
        for (const auto& file : updater.getArchive().getUpdateFileList()) {
            const bool isUpgrade = file.mode == ZoNUpdateArchive::UpdateMode::upgrade;
            files.push_back({file.name.c_str(),
                             file.entry,
                             file.sequence,
                             file.version.getAsULong64(),
                             file.checksumCrc32,
                             isUpgrade,
                             file.hasTargetPath,
                             {}});
            const unsigned count = inspector->readFileKeys(static_cast<unsigned>(files.size() - 1));
            for (unsigned i = 0; i < count; ++i) {
                files.back().keys.push_back(keysOf(inspector->getFileKeys(i)));
            }
        }
        return files;
    }

    static JudgedKeys keysOf(const ZoNTrellanInspector::ZoTFileKeys& keys)
    {
        const auto value = [](const std::string& text) { return nlohmann::json::parse(text, nullptr, false); };
        return {keys.decidesFor,     value(keys.boardType),         value(keys.boardVariant),
                value(keys.boardId), value(keys.hwCompatibilityId), value(keys.swCompatibilityId),
                value(keys.id),      value(keys.targetPath)};
    }
};

std::vector<std::string> tokensOf(const std::string& text)
{
    static const std::regex token(R"("[^"]*"|[-+.\w]+|[\[\]{},:]|\s+)");
    return {std::sregex_token_iterator(text.begin(), text.end(), token), std::sregex_token_iterator()};
}

const std::vector<std::string> strangeTokens = {"null",
                                                "true",
                                                "-1",
                                                "-0",
                                                "0",
                                                "1",
                                                "3",
                                                "7.0",
                                                "1e3",
                                                "4294967296",
                                                "18446744073709551616",
                                                "\"\"",
                                                "\"1.0\"",
                                                "\"2.0\"",
                                                "\"0.0\"",
                                                "\"a\\u0000b\"",
                                                "\"\\ud800\"",
                                                "[]",
                                                "{}",
                                                "[1]",
                                                "[1,\"A\"]",
                                                "[null]",
                                                "\"id\"",
                                                "\"name\"",
                                                "\"boards\"",
                                                "\"targetPath\"",
                                                "\"featureLevel\"",
                                                "\"checksumCrc32\"",
                                                "\"upgrade\"",
                                                "\"version\"",
                                                "nan",
                                                "'a'",
                                                "{\"boardType\":\"A\"}",
                                                "[{\"boardType\":\"A\",\"id\":1}]",
                                                ",",
                                                "\"\xff\"",
                                                "\"c.bin\""};

unsigned countOf(const std::string& part, const std::string& text)
{
    unsigned count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
        ++count;
    }
    return count;
}

// One to three tokens exchanged, left out, or written twice.
std::string mutant(std::vector<std::string> tokens, std::mt19937& random)
{
    for (unsigned count = 1 + random() % 3; count > 0; --count) {
        const std::size_t at = random() % tokens.size();
        switch (random() % 5) {
            case 0:
                tokens[at].clear();
                break;
            case 1:
                tokens[at] += tokens[at];
                break;
            case 2:
                std::swap(tokens[at], tokens[random() % tokens.size()]);
                break;
            default:
                tokens[at] = strangeTokens[random() % strangeTokens.size()];
        }
    }
    std::string text;
    for (const std::string& token : tokens) {
        text += token;
    }
    return text;
}

}  // namespace

TEST_F(DamagedDescriptions, TheJudgeTakesTheSoundOne)
{
    judgeReading(sound);
    EXPECT_EQ(accepted, 1u);
    const auto judged = judge(sound, archive.path());
    ASSERT_EQ(judged->files.size(), 9u);
    EXPECT_EQ(judged->version, 0x1702'0000'0000'0000u);
    EXPECT_EQ(judged->variant, "lean");
    const nlohmann::json none(nlohmann::json::value_t::discarded);
    EXPECT_TRUE(judged->files[0] == (JudgedFile{"a.bin",
                                                0,
                                                1,
                                                0x1702'0000'0000'0000,
                                                4711,
                                                false,
                                                false,
                                                {{{"KR5120"}, "KR5120", nullptr, 0, 0, 0, 1, none}}}));
    EXPECT_TRUE(judged->files[5] == (JudgedFile{"f.cfg",
                                                5,
                                                3,
                                                0x1702'0000'0000'0000,
                                                4,
                                                true,
                                                true,
                                                {{{"CN7210"}, "CN7210", nullptr, 0, 0, 0, none, "config/site.cfg"}}}));
    EXPECT_TRUE(judged->files[6].keys[1] == (JudgedKeys{{"Y", "Z"}, {"Y", "Z"}, nullptr, 1, 0, 0, 6, none}));
    EXPECT_EQ(judged->files[8].version, 0x0102'0002'0003'0000u);
    EXPECT_EQ(judged->passedOver, 1u);
}

TEST_F(DamagedDescriptions, CutAtEachByteAreRefused)
{
    const std::size_t end = sound.find_last_of('}');
    for (std::size_t length = 0; length <= end && !HasFailure(); length += oneOf) {
        judgeReading(sound.substr(0, length));
    }
    EXPECT_EQ(accepted, 0u);
    EXPECT_EQ(refused, end / oneOf + 1);
}

TEST_F(DamagedDescriptions, WithOneBitFlippedAreReadAsTheyStandThereOrRefused)
{
    constexpr unsigned flips = 10000 / oneOf;
    std::mt19937 random(4711);
    for (unsigned i = 0; i < flips && !HasFailure(); ++i) {
        std::string text = sound;
        text[random() % text.size()] ^= static_cast<char>(1u << random() % 8);
        judgeReading(text);
    }
    EXPECT_GT(accepted, flips / 12);
    EXPECT_GT(refused, flips / 4);
}

TEST_F(DamagedDescriptions, WithPiecesExchangedAreReadAsTheyStandThereOrRefused)
{
    constexpr unsigned mutants = 4000 / oneOf;
    std::mt19937 random(815);
    const std::vector<std::string> tokens = tokensOf(sound);
    for (unsigned i = 0; i < mutants && !HasFailure(); ++i) {
        judgeReading(mutant(tokens, random));
    }
    EXPECT_GT(accepted, mutants / 30);
    EXPECT_GT(refused, mutants / 4);
}

// By the tool, to its exit status: a few of each kind of damage.
TEST_F(DamagedDescriptions, EndTheToolWith3AndOneMessageWhereTheyAreRefused)
{
    constexpr unsigned runs = oneOf == 1 ? 120 : 40;
    std::mt19937 random(1511);
    const std::vector<std::string> tokens = tokensOf(sound);
    unsigned statuses[2] = {};  // 0 and 3
    for (unsigned i = 0; i < runs && !HasFailure(); ++i) {
        std::string text = i % 3 == 0 ? mutant(tokens, random) : i % 3 == 1 ? sound.substr(0, random() % 1000) : sound;
        if (i % 3 == 2) {
            text[random() % text.size()] ^= static_cast<char>(1u << random() % 8);
        }
        writeText(std::string(archive.path()) + "/damaged.json", text);
        const ProcessResult result =
            runProcess(TRELLAN_TOOL, {"list", archive.path(), "--description", "damaged.json"}, archive.path());
        const bool isRefused = !judge(text, archive.path());
        EXPECT_EQ(result.status, isRefused ? 3 : 0) << text;
        EXPECT_EQ(countOf("\nERROR: ", result.output), isRefused ? 2u : 0u) << result.output << text;
        EXPECT_EQ(result.output.ends_with("\nERROR: Failed to read firmware archive.\n"), isRefused) << text;
        EXPECT_EQ(result.errors, "") << text;
        ++statuses[isRefused ? 1 : 0];
    }
    EXPECT_GT(statuses[0], 0u);
    EXPECT_GT(statuses[1], runs / 2);
}
