// The command that checks an archive: what it ends with, and descriptions that cannot be opened or are out of the
// ordinary. What it finds is tested rule by rule, in the folder "documents".
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/PseudoTerminal.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"
#include "tool/CommandLine.h"
#include "tool/JsonDocument.h"

namespace fs = std::filesystem;
using nlohmann::ordered_json;

namespace {

// A description without entries, with `more` behind its members.
std::string descriptionWith(const std::string& more = "")
{
    return R"({"info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"},)"
           R"( "files": [])" +
           more + "}";
}

std::string repeated(const std::string& text, unsigned count)
{
    std::string result;
    for (; count > 0; --count) {
        result += text;
    }
    return result;
}

class CheckCommand : public testing::Test {
protected:
    void describe(const std::string& text, const std::string& name = "archive.json") const
    {
        folder.write("archive/" + name, text);
    }

    std::string path(const std::string& name = "archive") const { return (folder.path() / name).string(); }

    RunResult check(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> words = {"check", path()};
        words.insert(words.end(), more.begin(), more.end());
        return ran(words);
    }

    // Expects that the description cannot be opened for this reason, with a document that says so.
    void expectNotOpened(const std::string& archive, const std::string& name, const std::string& reason) const
    {
        const std::string message = "cannot open the archive description " + path(archive) + "/" + name + ": " + reason;
        const RunResult text = ran({"check", path(archive), "--description", name});
        EXPECT_EQ(text.status, 3);
        EXPECT_EQ(text.out, "");
        EXPECT_EQ(text.err, "trellan-update: " + message + "\n");
        const RunResult json = ran({"check", path(archive), "--description", name, "--json"});
        EXPECT_EQ(json.status, 3);
        EXPECT_EQ(json.err, "trellan-update: " + message + "\n");
        EXPECT_EQ(conformingDocument(json.out),
                  ordered_json(
                      {{"schemaVersion", 1}, {"command", "check"}, {"error", {{"status", 3}, {"message", message}}}}));
    }

    const TempDir folder;
};

}  // namespace

TEST_F(CheckCommand, EndsWith0WithoutErrorsAndCountsNothing)
{
    describe(descriptionWith());
    const RunResult result = check();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "0 errors, 0 warnings, 0 notes\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(CheckCommand, EndsWith1WithAnErrorAndCountsEachKind)
{
    describe(descriptionWith(R"(, "a": 1, "b": 1, "a": 2)"));
    folder.write("archive/notes.txt", "notes");
    const RunResult result = check();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.ends_with("\n1 error, 2 warnings, 1 note\n")) << result.out;
    EXPECT_EQ(check({"--strict"}).status, 1);
}

TEST_F(CheckCommand, CountsWarningsAsErrorsWhereItIsStrict)
{
    describe(descriptionWith(R"(, "a": 1)"));
    EXPECT_EQ(check().status, 0);
    const RunResult strict = check({"--strict"});
    EXPECT_EQ(strict.status, 1);
    EXPECT_TRUE(strict.out.ends_with("\n0 errors, 1 warning, 0 notes\n")) << strict.out;
}

TEST_F(CheckCommand, CountsNotesAsNothing)
{
    describe(descriptionWith());
    folder.write("archive/notes.txt", "notes");
    const RunResult strict = check({"--strict"});
    EXPECT_EQ(strict.status, 0);
    EXPECT_TRUE(strict.out.ends_with("\n0 errors, 0 warnings, 1 note\n")) << strict.out;
}

TEST_F(CheckCommand, PrintsADocument)
{
    describe(descriptionWith(R"(, "a": 1)"));
    const RunResult result = check({"--json"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(conformingDocument(result.out), ordered_json::parse(R"({
        "schemaVersion": 1,
        "command": "check",
        "findings": [{
            "rule": "unknown-key", "severity": "warning", "file": null, "board": null, "pointer": "/a", "line": 1,
            "column": 114, "message": "the format has no \"a\" here; the nearest is \"info\""
        }],
        "counts": {"error": 0, "warning": 1, "note": 0}
    })"));
    EXPECT_EQ(check({"--json", "--strict"}).status, 1);
}

TEST_F(CheckCommand, PrintsNothingWhereItIsToBeQuiet)
{
    describe("");
    const RunResult result = check({"--quiet"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
}

TEST_F(CheckCommand, EndsWith3WhereTheDescriptionCannotBeOpened)
{
    describe(descriptionWith());
    fs::create_directory(folder.path() / "archive/folder");
    ASSERT_EQ(::mkfifo((folder.path() / "archive/pipe").c_str(), 0666), 0);
    expectNotOpened("absent", "archive.json", "No such file or directory");
    expectNotOpened("archive", "absent.json", "No such file or directory");
    expectNotOpened("archive", "folder", "Is a directory");
    expectNotOpened("archive", "pipe", "it is no regular file");
    expectNotOpened("archive/archive.json", "archive.json", "Not a directory");
}

TEST_F(CheckCommand, DoesNotReadADevice)
{
    describe(descriptionWith());
    fs::create_symlink("/dev/zero", folder.path() / "archive/zero");
    expectNotOpened("archive", "zero", "it is no regular file");
}

TEST_F(CheckCommand, EndsWith3WhereTheDescriptionCannotBeRead)
{
    describe(descriptionWith());
    makeUnreadable(folder.path() / "archive", "archive.json");
    fs::permissions(folder.path(), fs::perms::all);
    const Unprivileged unprivileged;
    expectNotOpened("archive", "archive.json", "Permission denied");
}

TEST_F(CheckCommand, ReadsAnArchiveAndADescriptionBehindLinks)
{
    describe(descriptionWith(), "real.json");
    fs::create_symlink("real.json", folder.path() / "archive/archive.json");
    fs::create_directory_symlink("archive", folder.path() / "link");
    const RunResult result = ran({"check", path("link")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "0 errors, 0 warnings, 0 notes\n");
}

TEST_F(CheckCommand, NamesAnotherDescriptionInItsFindings)
{
    describe(descriptionWith(R"(, "a": 1)"), "new.json");
    EXPECT_EQ(check({"--description", "new.json"}).out,
              "new.json:1:114: warning: the format has no \"a\" here; the nearest is \"info\" [unknown-key]\n"
              "0 errors, 1 warning, 0 notes\n");
}

TEST_F(CheckCommand, TakesDescriptionsAsDeepAsTheReaderDoes)
{
    describe(descriptionWith(R"(, "a": )" + repeated("[", 511) + repeated("]", 511)));
    EXPECT_EQ(check().status, 0);
    EXPECT_EQ(ran({"archive-version", path()}).status, 0);

    describe(descriptionWith(R"(, "a": )" + repeated("[", 512) + repeated("]", 512)));
    const RunResult result = check();
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.out.starts_with("archive.json:1:630: error: ")) << result.out;
    EXPECT_NE(result.out.find("(more than 512 nested levels) [syntax]\n"), std::string::npos) << result.out;
    EXPECT_EQ(ran({"archive-version", path()}).status, 3);
}

TEST_F(CheckCommand, TakesAnEmptyDescriptionAndNoughtsForNoJson)
{
    for (const std::string& text : {std::string(), std::string(3, '\0'), std::string("{}\0", 3)}) {
        describe(text);
        const RunResult result = check();
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.out.find(" [syntax]\n1 error, 0 warnings, 0 notes\n"), std::string::npos) << result.out;
    }
}

TEST_F(CheckCommand, ShowsATerminalControlCharactersOfNames)
{
    describe(R"({"info": {"formatVersion": "1.0", "archiveVersion": "2.0", "productName": "P", "archiveName": "N"},)"
             R"( "files": [], "a\u001b\u009b": 1})");
    const PseudoTerminal terminal;
    runProcess("/bin/sh", {"-c", "exec \"$0\" check \"$1\" >" + terminal.path(), TRELLAN_TOOL, path()}, folder.path());
    EXPECT_EQ(terminal.shown(),
              "archive.json:1:114: warning: the format has no \"a\\x1b\\xc2\\x9b\" here; the nearest is \"info\" "
              "[unknown-key]\n0 errors, 1 warning, 0 notes\n");
}

TEST_F(CheckCommand, NeedsNoTarget)
{
    describe(descriptionWith());
    const RunResult result = check({"--target", path("absent.json")});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "0 errors, 0 warnings, 0 notes\n");
    EXPECT_EQ(result.err, "trellan-update: note: --target has no meaning for check\n");
}
