// The archive's identification: the members of "info", each with its message, and the order of the checks.
#include <gtest/gtest.h>

#include "ArchiveReader.h"

using nlohmann::ordered_json;

namespace {

struct InfoRule {
    const char* key;
    bool mandatory;
    const char* message;  // of a missing or wrong value
};

// In the order of the checks.
const InfoRule infoRules[] = {
    {"formatVersion", true,
     "ERROR: The archive description file is corrupt. \"formatVersion\" is missing or invalid.\n"},
    {"archiveVersion", true,
     "ERROR: The archive description file is corrupt. \"archiveVersion\" is missing or invalid.\n"},
    {"productName", true, "ERROR: The archive description file is corrupt. \"productName\" is missing or invalid.\n"},
    {"archiveVariant", false, "ERROR: The archive description file is corrupt. \"archiveVariant\" is invalid.\n"},
    {"archiveName", true, "ERROR: The archive description file is corrupt. \"archiveName\" is missing or invalid.\n"},
};

const char* const newerFirmwareMessage =
    "ERROR: This firmware archive cannot be processed by the installed firmware.\n"
    "       You might need to install another (newer) firmware first.\n";

ordered_json withInfo(const ordered_json& info)
{
    ordered_json document = description({});
    document["info"] = info;
    return document;
}

ordered_json infoWith(const std::string& key, const ordered_json& value)
{
    ordered_json object = info();
    object[key] = value;
    return withInfo(object);
}

}  // namespace

TEST(Info, MandatoryMembersMustBePresent)
{
    for (const InfoRule& rule : infoRules) {
        if (rule.mandatory) {
            expectRefused(withInfo(without(info(), rule.key)), rule.message);
        }
    }
}

TEST(Info, MembersMustBeStrings)
{
    for (const InfoRule& rule : infoRules) {
        for (const ordered_json& value : {ordered_json(nullptr), ordered_json(true), ordered_json(1), ordered_json(1.0),
                                          ordered_json::array({"1.0"}), ordered_json::object()}) {
            expectRefused(infoWith(rule.key, value), rule.message);
        }
    }
}

TEST(Info, MembersAreCheckedInTheirOrder)
{
    for (const InfoRule& first : infoRules) {
        ordered_json object = info();
        for (const InfoRule* rule = &first; rule != std::end(infoRules); ++rule) {
            object[rule->key] = 5;
        }
        expectRefused(withInfo(object), first.message);
    }
}

TEST(Info, FormatVersionMustParse)
{
    for (const char* version : {"", "0", "0.0", "one", "1.", "1.0 ", " 1.0", "-1.0", "1.0x", "256.0", "1.0.0.0"}) {
        expectRefused(infoWith("formatVersion", version),
                      "ERROR: The archive description file is corrupt. \"formatVersion\" is invalid.\n");
    }
}

TEST(Info, VersionsAreNotCutAtANul)
{
    const std::string version("1.0\0x", 5);
    expectRefused(infoWith("formatVersion", version),
                  "ERROR: The archive description file is corrupt. \"formatVersion\" is invalid.\n");
    expectRefused(infoWith("archiveVersion", version),
                  "ERROR: The archive description file is corrupt. \"archiveVersion\" is invalid.\n");
}

TEST(Info, FormatVersionMustBeOfTheFirstGeneration)
{
    for (const char* version : {"2.0", "0.1", "0.0.1", "10.0", "255.255"}) {
        expectRefused(infoWith("formatVersion", version), newerFirmwareMessage);
    }
    for (const char* version : {"1", "1.0", "1.1", "01.0", "1.255.7", "1.0a1"}) {
        expectAccepted(infoWith("formatVersion", version));
    }
}

TEST(Info, FormatVersionOfAnotherGenerationEndsTheReadingBeforeTheArchiveVersion)
{
    expectRefused(ordered_json{{"info", {{"formatVersion", "2.0"}, {"archiveVersion", 5}}}, {"files", 5}},
                  newerFirmwareMessage);
}

TEST(Info, ArchiveVersionMustParse)
{
    for (const char* version : {"", "0", "0.0.0", "newest", "1.2.3.4", "1.0s2.1", "1.0p70000"}) {
        expectRefused(infoWith("archiveVersion", version),
                      "ERROR: The archive description file is corrupt. \"archiveVersion\" is invalid.\n");
    }
}

TEST(Info, ArchiveVersionIsCheckedBeforeTheProductName)
{
    expectRefused(withInfo({{"formatVersion", "1.0"}, {"archiveVersion", ""}, {"productName", 5}}),
                  "ERROR: The archive description file is corrupt. \"archiveVersion\" is invalid.\n");
}

TEST(Info, StringsMayBeEmpty)
{
    expectAccepted(infoWith("productName", ""));
    expectAccepted(infoWith("archiveVariant", ""));
    expectAccepted(infoWith("archiveName", ""));
}

TEST(Info, OtherMembersAreIgnored)
{
    expectAccepted(infoWith("author", 5));
    expectAccepted(infoWith("ArchiveVariant", 5));
}

TEST(Info, IsGivenToTheHost)
{
    TestArchive archive(withInfo({{"formatVersion", "1.7"},
                                  {"archiveVersion", "23.2.0a12"},
                                  {"productName", "Trellan product"},
                                  {"archiveVariant", "lean"},
                                  {"archiveName", "Spring release"}}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    std::string name = "old", version = "old", product = "old", format = "old", variant = "old";
    reader.archive().getInfo(name, version, product, format, variant);
    EXPECT_EQ(name, "Spring release");
    EXPECT_EQ(version, "23.2a12");
    EXPECT_EQ(product, "Trellan product");
    EXPECT_EQ(format, "1.7");
    EXPECT_EQ(variant, "lean");
}

TEST(Info, IsGivenToTheHostWithTextsBeyondANul)
{
    TestArchive archive(withInfo({{"formatVersion", "1.0"},
                                  {"archiveVersion", "2.0"},
                                  {"productName", std::string("p\0q", 3)},
                                  {"archiveVariant", std::string("\0v", 2)},
                                  {"archiveName", std::string("n\0", 2)}}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    std::string name, version, product, format, variant;
    reader.archive().getInfo(name, version, product, format, variant);
    EXPECT_EQ(name, std::string("n\0", 2));
    EXPECT_EQ(product, std::string("p\0q", 3));
    EXPECT_EQ(variant, std::string("\0v", 2));
}

TEST(Info, AbsentVariantIsEmpty)
{
    TestArchive archive(description({}));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    std::string name, version, product, format, variant = "old";
    reader.archive().getInfo(name, version, product, format, variant);
    EXPECT_EQ(variant, "");
    EXPECT_EQ(version, "2.3.4");
}

TEST(Info, VariantIsForgottenWhenAnArchiveWithoutOneIsRead)
{
    TestArchive archive(infoWith("archiveVariant", "lean"));
    ArchiveReader reader(archive);
    ASSERT_TRUE(reader.read());
    archive.addFile("archive.json", description({}).dump());
    ASSERT_TRUE(reader.read());
    std::string name, version, product, format, variant = "old";
    reader.archive().getInfo(name, version, product, format, variant);
    EXPECT_EQ(variant, "");
}

TEST(Info, IsEmptyBeforeReading)
{
    TestArchive archive(description({}));
    ArchiveReader reader(archive);
    std::string name = "old", version = "old", product = "old", format = "old", variant = "old";
    reader.archive().getInfo(name, version, product, format, variant);
    EXPECT_EQ(name + product + variant, "");
    EXPECT_EQ(version, "0.0");
    EXPECT_EQ(format, "0.0");
}
