// Files that are read whole.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <thread>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "tool/TextFile.h"

using TrellanTool::readWholeFile;

namespace {

class TextFiles : public testing::Test {
protected:
    const TempDir folder;
};

}  // namespace

TEST_F(TextFiles, AreReadWhole)
{
    const std::string text = std::string("a\0b\n", 4) + std::string(300'000, 'x');
    EXPECT_EQ(readWholeFile(folder.write("file", text).string()), text);
    EXPECT_EQ(readWholeFile(folder.write("empty", "").string()), "");
}

TEST_F(TextFiles, AreReadAlsoWhereTheyTellNoSize)
{
    const auto text = readWholeFile("/proc/self/status");
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->starts_with("Name:")) << *text;
    EXPECT_TRUE(text->ends_with('\n')) << *text;
}

TEST_F(TextFiles, AreReadWholeWhereTheyComePieceByPiece)
{
    const std::string path = (folder.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        text += std::to_string(i) + '\n';
    }
    std::thread writer([&] {
        std::ofstream pipe(path, std::ios::binary);
        for (std::size_t at = 0; at < text.size(); at += 1000) {
            pipe.write(text.data() + at, static_cast<std::streamsize>(std::min<std::size_t>(1000, text.size() - at)));
            pipe.flush();
        }
    });
    const auto got = readWholeFile(path);
    writer.join();
    ASSERT_TRUE(got);
    EXPECT_TRUE(*got == text) << got->size() << " bytes in place of " << text.size();
}

TEST_F(TextFiles, TellWhyTheyCannotBeRead)
{
    EXPECT_EQ(readWholeFile((folder.path() / "none").string()), std::nullopt);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(readWholeFile(folder.path().string()), std::nullopt);
    EXPECT_EQ(errno, EISDIR);
}

TEST_F(TextFiles, TakeNoMoreMemoryThanTheyAreLong)
{
    std::filesystem::resize_file(folder.write("large", ""), 256 << 20);
    struct rusage before = {}, after = {};
    ::getrusage(RUSAGE_SELF, &before);
    const auto text = readWholeFile((folder.path() / "large").string());
    ::getrusage(RUSAGE_SELF, &after);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), 256u << 20);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 400 << 10) << "KB";
}

TEST_F(TextFiles, AreCheckedWithoutACopy)
{
    std::filesystem::create_directory(folder.path() / "archive");
    std::filesystem::resize_file(folder.write("archive/archive.json", ""), 256 << 20);
    const ProcessResult result = runProcess(TRELLAN_TOOL, {"check", "archive"}, folder.path());
    EXPECT_NE(result.output.find("a NUL character) [syntax]\n1 error"), std::string::npos) << result.output;
    struct rusage used = {};
    ::getrusage(RUSAGE_CHILDREN, &used);
    EXPECT_LT(used.ru_maxrss, 450 << 10) << "KB";
}

TEST_F(TextFiles, AreNamedWhereMemoryDoesNotSuffice)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer ends a process that asks for so much";
#endif
    std::filesystem::create_directory(folder.path() / "archive");
    std::filesystem::resize_file(folder.write("archive/archive.json", ""), std::uintmax_t{1} << 40);
    const std::string description = (folder.path() / "archive/archive.json").string();
    const ProcessResult result = runProcess(TRELLAN_TOOL, {"check", "archive", "--json"}, folder.path());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "trellan-update: " + description + " cannot be read: Cannot allocate memory\n");

    std::filesystem::resize_file(folder.write("archive/plan", ""), std::uintmax_t{1} << 40);
    folder.write("target.json", R"({"tree":{"id":"ROOT"}})");
    folder.write(
        "archive/archive.json",
        R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P","archiveName":"N"},"files":[]})");
    const ProcessResult planned = runProcess(
        TRELLAN_TOOL, {"update", "archive", "--target", "target.json", "--plan", "archive/plan"}, folder.path());
    EXPECT_EQ(planned.status, 1);
    EXPECT_NE(planned.errors.find("plan cannot be read: Cannot allocate memory\n"), std::string::npos)
        << planned.errors;
}

TEST_F(TextFiles, EndACommandInOneWayWhereMemoryDoesNotSuffice)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer ends a process that asks for so much";
#endif
    std::filesystem::create_directory(folder.path() / "archive");
    std::filesystem::resize_file(folder.write("archive/archive.json", ""), std::uintmax_t{1} << 40);
    folder.write("target.json", R"({"tree":{"id":"ROOT"}})");
    for (const char* const command : {"check", "list", "archive-version", "describe", "compare", "update", "explain"}) {
        const ProcessResult result =
            runProcess(TRELLAN_TOOL, {command, "archive", "--target", "target.json"}, folder.path());
        EXPECT_EQ(result.status, 1) << command << ": " << result.errors;
    }
}
