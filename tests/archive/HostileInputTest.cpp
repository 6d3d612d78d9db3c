// Description files that nobody wrote with good intent, or that a medium has damaged: each ends with its message.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "ArchiveReader.h"
#include "support/Unprivileged.h"
#include "support/UpdateFiles.h"

namespace {

const char* const infoText =
    "{\"formatVersion\":\"1.0\",\"archiveVersion\":\"1.0\",\"productName\":\"P\",\"archiveName\":\"N\"}";

// A description with one entry that has `members` beside "sequence", "boardType" and "id".
std::string withEntry(const std::string& members)
{
    return std::string("{\"info\":") + infoText + ",\"files\":[{\"sequence\":1,\"boardType\":\"A\",\"id\":1," +
           members + "}]}";
}

const std::string validText = withEntry("\"name\":\"a.bin\",\"checksumCrc32\":1");

std::string repeat(const std::string& piece, std::size_t count)
{
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; ++i) {
        text += piece;
    }
    return text;
}

void expectNotJson(const TestArchive& archive)
{
    expectRefused(archive, "ERROR: The archive description file " + archive.path() +
                               "/archive.json is corrupt. Invalid JSON data.\n");
}

void expectNotJson(const std::string& text)
{
    expectNotJson(TestArchive(text));
}

// A valid description whose nesting is `levels` deep.
std::string nested(std::size_t levels)
{
    const std::size_t outer = 3;  // the document, "files" and the entry
    return withEntry("\"name\":\"a.bin\",\"checksumCrc32\":1,\"x\":" + repeat("[", levels - outer) +
                     repeat("]", levels - outer));
}

constexpr std::size_t hundredMegabytes = 100 * 1024 * 1024;

}  // namespace

TEST(HostileInput, TheTextsBelowAreValidWithoutTheirDefect)
{
    expectAccepted(TestArchive(validText));
}

TEST(HostileInput, FolderInPlaceOfTheDescription)
{
    TestArchive archive("replaced");
    std::filesystem::remove(archive.path() + "/archive.json");
    std::filesystem::create_directory(archive.path() + "/archive.json");
    expectNotJson(archive);
}

TEST(HostileInput, UnreadableDescription)
{
    TestArchive archive(validText);
    makeUnreadable(archive.path(), "archive.json");
    const Unprivileged user;
    expectRefused(archive, "ERROR: Cannot open archive description file " + archive.path() + "/archive.json\n");
}

TEST(HostileInput, EmptyDescription)
{
    expectNotJson("");
}

TEST(HostileInput, NothingButBlanks)
{
    for (const char* text : {" ", "\n", " \t\r\n ", "\xEF\xBB\xBF", "\xEF\xBB\xBF "}) {
        expectNotJson(std::string(text));
    }
}

TEST(HostileInput, HundredMegabytesOfBlanks)
{
    TestArchive archive("");
    archive.addFile("archive.json", std::string(hundredMegabytes, ' '));
    expectNotJson(archive);
}

TEST(HostileInput, HundredMegabytesOfNothing)
{
    TestArchive archive("");
    std::filesystem::resize_file(archive.path() + "/archive.json", hundredMegabytes);
    expectNotJson(archive);
}

TEST(HostileInput, HundredThousandLevels)
{
    expectNotJson(repeat("[", 100000));
    expectNotJson(repeat("{\"a\":", 100000));
    expectNotJson(repeat("[", 100000) + repeat("]", 100000));
    expectNotJson(nested(100000));
}

TEST(HostileInput, DeepestNesting)
{
    expectAccepted(TestArchive(nested(512)));
    expectNotJson(nested(513));
}

TEST(HostileInput, NulAfterTheEnd)
{
    expectNotJson(validText + std::string(1, '\0'));
    expectNotJson(validText + std::string(4096, '\0'));
    expectNotJson(validText + std::string("\0garbage", 8));
    expectNotJson(validText + "\n" + std::string(1, '\0') + validText);
}

TEST(HostileInput, NulBetweenMembers)
{
    expectNotJson(std::string("{\0", 2) + validText.substr(1));
}

TEST(HostileInput, NulInAName)
{
    expectNotJson(withEntry(std::string("\"name\":\"a\0b\",\"checksumCrc32\":1", 30)));
}

TEST(HostileInput, EscapedNulInAName)
{
    TestArchive archive(withEntry("\"name\":\"a\\u0000b\""));
    archive.addFile("a", UpdateFiles::bitstreamFile(5));
    expectRefused(archive, "ERROR: Cannot read checksum from update file. '" + archive.path() + "/a' not found.\n");
}

TEST(HostileInput, EscapedNulInAMember)
{
    expectRefused(TestArchive(withEntry("\"name\\u0000\":\"a.bin\"")),
                  "ERROR: File entry 0 is invalid. A mandatory property is missing or invalid.\n");
}

TEST(HostileInput, Utf8Faults)
{
    for (const char* bytes :
         {"\xFF", "\x80", "\xC3", "\xC0\xAF", "\xE2\x82", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80"}) {
        expectNotJson(withEntry("\"name\":\"a" + std::string(bytes) + "b\",\"checksumCrc32\":1"));
        expectNotJson(withEntry("\"name\":\"a.bin\",\"checksumCrc32\":1,\"" + std::string(bytes) + "\":1"));
        expectNotJson(validText + bytes);
    }
}

TEST(HostileInput, LoneSurrogates)
{
    for (const char* escape : {"\\uD800", "\\uDC00", "\\uD800x", "\\uD800\\u0041"}) {
        expectNotJson(withEntry("\"name\":\"" + std::string(escape) + "\",\"checksumCrc32\":1"));
    }
}

TEST(HostileInput, NumberOfFourHundredDigits)
{
    expectNotJson(withEntry("\"name\":\"a.bin\",\"checksumCrc32\":" + std::string(400, '9')));
    expectNotJson(withEntry("\"name\":\"a.bin\",\"checksumCrc32\":1e400"));
}

TEST(HostileInput, NumberBeyondSixtyFourBitsIsNoUnsignedInteger)
{
    for (const std::string& number : {std::string("18446744073709551616"), std::string(300, '9')}) {
        expectRefused(TestArchive(withEntry("\"name\":\"a.bin\",\"checksumCrc32\":" + number)),
                      "ERROR: File entry 0 is invalid. Property \"checksumCrc32\" has an invalid value.\n");
        expectRefused(TestArchive(withEntry("\"name\":\"a.bin\",\"featureLevel\":" + number)),
                      "ERROR: File entry 0 is invalid. Property \"featureLevel\" is invalid.\n");
    }
}

TEST(HostileInput, EveryTruncation)
{
    for (std::size_t length = 0; length < validText.size(); ++length) {
        expectNotJson(validText.substr(0, length));
    }
}

TEST(HostileInput, VeryLongName)
{
    const std::string name(1000000, 'n');
    TestArchive archive(withEntry("\"name\":\"" + name + "\""));
    expectRefused(archive,
                  "ERROR: Cannot read checksum from update file. '" + archive.path() + "/" + name + "' not found.\n");
}

TEST(HostileInput, TwentyThousandEntries)
{
    TestArchive archive(
        std::string("{\"info\":") + infoText + ",\"files\":[" +
        repeat("{\"name\":\"a\",\"sequence\":1,\"boardType\":\"A\",\"id\":1,\"checksumCrc32\":1},", 20000) + "5]}");
    expectRefused(archive, "ERROR: File entry 20000 is invalid.\n");
}

TEST(HostileInput, APipeInPlaceOfTheDescriptionIsNotWaitedFor)
{
    const TempDir folder;
    ASSERT_EQ(mkfifo((folder.path() / "archive.json").c_str(), 0600), 0);
    ArchiveReader reader(folder.path().string(), "archive.json");
    EXPECT_FALSE(reader.read());
    EXPECT_EQ(reader.text(),
              "ERROR: Cannot open archive description file " + folder.path().string() + "/archive.json\n");
}

TEST(HostileInput, APipeInPlaceOfAnUpdateFileIsNotWaitedFor)
{
    const TestArchive archive(withEntry("\"name\":\"pipe.bin\""));
    ASSERT_EQ(mkfifo((archive.path() + "/pipe.bin").c_str(), 0600), 0);
    expectRefused(archive, "ERROR: Cannot read checksum from update file pipe.bin.\n");
}
