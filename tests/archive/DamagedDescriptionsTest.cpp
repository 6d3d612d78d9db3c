// Descriptions that were damaged by chance: cut, with single bits flipped, with pieces exchanged. Each is read as a
// judge of its own reads it, or refused with exactly one message.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <regex>

#include "DescriptionJudge.h"
#include "archive/ZoCUpdateArchive.h"
#include "support/MessageCapture.h"
#include "support/OpenUpdater.h"
#include "support/TestArchive.h"
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
            expectArchive(updater.getArchive(), *expected, text);
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

    static void expectArchive(ZoCUpdateArchive& read, const JudgedArchive& expected, const std::string& text)
    {
        std::string name, version, product, format, variant;
        read.getInfo(name, version, product, format, variant);
        EXPECT_EQ(name, expected.name) << text;
        EXPECT_EQ(product, expected.product) << text;
        EXPECT_EQ(read.getUnsupportedElements(), expected.passedOver) << text;
        std::vector<JudgedFile> files;
        for (const auto& file : read.getUpdateFileList()) {
            files.push_back({file.name.c_str(), file.sequence, file.checksumCrc32,
                             file.mode == ZoNUpdateArchive::UpdateMode::upgrade, file.hasTargetPath});
        }
        EXPECT_TRUE(files == expected.files) << text;
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
    EXPECT_EQ(judged->files[0], (JudgedFile{"a.bin", 1, 4711, false, false}));
    EXPECT_EQ(judged->files[5], (JudgedFile{"f.cfg", 3, 4, true, true}));
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
