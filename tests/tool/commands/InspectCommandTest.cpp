// The command that tells what update files say of themselves.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/TempDir.h"
#include "support/UpdateFiles.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

class InspectCommand : public testing::Test {
protected:
    std::string file(const std::string& name, const std::string& content)
    {
        return folder.write(name, content).string();
    }

    std::string binary()
    {
        UpdateFiles::BinaryHeader header;
        header.checksum = 4294967295;
        header.version = {2, 3, 0};
        header.minHwCompatibilityId = 1;
        header.maxHwCompatibilityId = 7;
        header.maxSwCompatibilityId = 9;
        return file("binary", UpdateFiles::binaryFile(header, 1200));
    }

    std::string inventory() { return file("inventory", UpdateFiles::inventoryFile({{"FIRMWARE/VERSION", "4.1a2"}})); }

    TempDir folder;
};

// A file's object, where nothing is known of it but its kind.
ordered_json record(const std::string& path, const ordered_json& kind)
{
    return {{"path", path},
            {"kind", kind},
            {"checksum", nullptr},
            {"version", nullptr},
            {"hwCompatibilityId", nullptr},
            {"swCompatibilityId", nullptr},
            {"error", nullptr}};
}

}  // namespace

TEST_F(InspectCommand, PrintsALineForEachFile)
{
    const RunResult result = ran({"inspect", binary(), inventory()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const std::string path = folder.path().string();
    const std::string blanks(path.size(), ' ');
    EXPECT_EQ(result.out, "File      " + blanks +
                              " | Kind      | Version | Checksum   | HwCompatibilityId | SwCompatibilityId\n" + path +
                              "/binary    | binary    | 2.3     | 4294967295 | 1 to 7            | 0 to 9\n" + path +
                              "/inventory | inventory | 4.1a2   | ---        | ---               | ---\n");
}

TEST_F(InspectCommand, KeepsNamesWithLineEndsOnOneLine)
{
    const std::string name = file("a\nb\tc\rd", "123456789");
    const RunResult result = ran({"inspect", name});
    EXPECT_EQ(result.status, 0);
    const std::string shown = folder.path().string() + "/a\\x0ab\\x09c\\x0dd";
    EXPECT_EQ(result.out, "File" + std::string(shown.size() - 4, ' ') +
                              " | Kind  | Version | Checksum   | HwCompatibilityId | SwCompatibilityId\n" + shown +
                              " | plain | ---     | 3421780262 | ---               | ---\n");
}

TEST_F(InspectCommand, ReadsNoFurtherThanTheFileIsLong)
{
    // Both are regular files of no bytes: reading the first waits for messages, the second has no end.
    for (const std::string endless : {"/proc/kmsg", "/proc/self/pagemap"}) {
        if (::access(endless.c_str(), R_OK) != 0) {
            GTEST_SKIP() << "nothing to read without an end";
        }
        const RunResult result = ran({"inspect", "--json", endless});
        EXPECT_EQ(result.status, 0);
        ordered_json expected = record(endless, "plain");
        expected["checksum"] = 0;
        EXPECT_EQ(conformingDocument(result.out)["files"][0], expected);
    }
}

TEST_F(InspectCommand, HasADocumentThatSaysWhatEachFileStates)
{
    const std::string bitstream = file("bitstream", UpdateFiles::bitstreamFile(99));
    const std::string silent = file("silent", UpdateFiles::bitstreamFile(99, 88));
    const std::string plain = file("plain", "123456789");
    const RunResult result = ran({"inspect", "--json", plain, binary(), inventory(), bitstream, silent});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    const ordered_json document = conformingDocument(result.out);
    EXPECT_EQ(document["command"], "inspect");
    const ordered_json& files = document["files"];
    ASSERT_EQ(files.size(), 5u);

    ordered_json expected = record(plain, "plain");
    expected["checksum"] = 0xCBF43926;
    EXPECT_EQ(files[0], expected);

    expected = record(folder.path() / "binary", "binary");
    expected["checksum"] = 4294967295;
    expected["version"] = "2.3";
    expected["hwCompatibilityId"] = {{"min", 1}, {"max", 7}};
    expected["swCompatibilityId"] = {{"min", 0}, {"max", 9}};
    EXPECT_EQ(files[1], expected);

    expected = record(folder.path() / "inventory", "inventory");
    expected["version"] = "4.1a2";
    EXPECT_EQ(files[2], expected);

    expected = record(bitstream, "bitstream");
    expected["checksum"] = 99;
    EXPECT_EQ(files[3], expected);
    EXPECT_EQ(files[4], record(silent, "bitstream"));
}

TEST_F(InspectCommand, NamesWhatCannotBeReadAndGoesOn)
{
    const std::string pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string missing = folder.path() / "missing";
    const RunResult result = ran({"inspect", missing, pipe, folder.path(), "/dev/zero", binary()});
    EXPECT_EQ(result.status, 1);
    const std::string unreadable = ": this is no regular file that can be read\n";
    EXPECT_EQ(result.err, "trellan-update: " + missing + ": there is no such file\ntrellan-update: " + pipe +
                              unreadable + "trellan-update: " + folder.path().string() + unreadable +
                              "trellan-update: /dev/zero" + unreadable);
    EXPECT_NE(result.out.find("/binary | binary | 2.3 "), std::string::npos) << result.out;
    EXPECT_EQ(result.out.find("missing"), std::string::npos) << result.out;
}

TEST_F(InspectCommand, PrintsNoTableOfNothing)
{
    const RunResult result = ran({"inspect", folder.path()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
}

TEST_F(InspectCommand, TellsInItsDocumentWhatCannotBeRead)
{
    const std::string missing = folder.path() / "missing";
    const RunResult result = ran({"inspect", "--json", missing, inventory()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "trellan-update: " + missing + ": there is no such file\n");
    const ordered_json files = conformingDocument(result.out)["files"];
    ASSERT_EQ(files.size(), 2u);
    ordered_json expected = record(missing, nullptr);
    expected["error"] = "there is no such file";
    EXPECT_EQ(files[0], expected);
    EXPECT_EQ(files[1]["kind"], "inventory");
}

TEST_F(InspectCommand, NeedsAFile)
{
    const RunResult result = ran({"inspect"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "trellan-update: FILE is required\ntrellan-update: see trellan-update help inspect\n");
}
