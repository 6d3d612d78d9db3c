// Whole runs of the command that holds an archive against many targets: signals, and what a terminal shows.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <vector>

#include "support/BuildTree.h"
#include "support/ComesTrue.h"
#include "support/Process.h"
#include "support/TargetBuilder.h"
#include "support/TempDir.h"
#include "support/TestArchive.h"
#include "support/TextFile.h"
#include "tool/JsonDocument.h"

using nlohmann::ordered_json;

namespace {

// So many targets with so many elements that reading them takes a while.
class CoverageRuns : public testing::Test {
protected:
    CoverageRuns()
    {
        writeText(folder.path() / "0.json", targetWith(2000).dump());
        for (unsigned i = 1; i < 400; ++i) {
            std::filesystem::create_hard_link(folder.path() / "0.json", folder.path() / (std::to_string(i) + ".json"));
        }
    }

    static ordered_json targetWith(unsigned count)
    {
        std::vector<ordered_json> elements;
        for (unsigned i = 1; i <= count; ++i) {
            elements.push_back(updateElement(i, {{"NAME", "E"}, {"VERSION", "1.0"}}));
        }
        return target({board("IOMODULE", {{"PRODUCT/BOARD_TYPE", "IO7"}}, elements)});
    }

    std::vector<std::string> words() const
    {
        return {"coverage", archive.path(), folder.path().string(), "--json", "--trace", trace().string()};
    }

    // With so few elements that the end can be waited for.
    std::vector<std::string> shortWords() const
    {
        std::vector<std::string> words = {"coverage", archive.path(), "--json"};
        for (unsigned i = 0; i < 50; ++i) {
            const std::filesystem::path file = few.path() / (std::to_string(i) + ".json");
            writeText(file, targetWith(200).dump());
            words.push_back(file.string());
        }
        return words;
    }

    std::filesystem::path trace() const { return folder.path() / "trace"; }

    // Returns while it reads the targets.
    void waitUntilItReads() const
    {
        const bool reads = comesTrue([this] {
            return std::filesystem::exists(trace()) && readText(trace()).find("\"scan\"") != std::string::npos;
        });
        EXPECT_TRUE(reads);
    }

    // Runs the command, and sends it the signal while it reads the targets.
    ProcessResult interrupted(int signal, bool withItsChildren) const
    {
        RunningProcess process(TRELLAN_TOOL, words(), folder.path());
        waitUntilItReads();
        withItsChildren ? process.sendToGroup(signal) : process.send(signal);
        return process.wait();
    }

    // The same with few elements, of one of its children.
    ProcessResult childInterrupted(int signal) const
    {
        RunningProcess process(TRELLAN_TOOL, shortWords(), folder.path());
        EXPECT_TRUE(comesTrue([&] { return !process.children().empty(); }));
        EXPECT_EQ(::kill(process.children().at(0), signal), 0);
        return process.wait();
    }

    const TestArchive archive = TestArchive(description({}));
    const TempDir folder;
    const TempDir few;
};

}  // namespace

TEST_F(CoverageRuns, EndAtOnceBySignalsAndSayIt)
{
    const ProcessResult result = interrupted(SIGTERM, false);
    EXPECT_EQ(result.status, 143);
    EXPECT_EQ(result.errors, "trellan-update: ended by SIGTERM while the targets were read\n");
    const ordered_json document = conformingDocument(result.output);
    EXPECT_EQ(document["error"]["status"], 143);
    EXPECT_EQ(document["error"]["message"], "ended by SIGTERM while the targets were read");
}

TEST_F(CoverageRuns, EndOnceOnlyWhereTheSignalComesToTheirChildrenToo)
{
    const ProcessResult result = interrupted(SIGINT, true);
    EXPECT_EQ(result.status, 130);
    EXPECT_EQ(result.errors, "trellan-update: ended by SIGINT while the targets were read\n");
    EXPECT_EQ(conformingDocument(result.output)["error"]["status"], 130);
}

TEST_F(CoverageRuns, EndAsOtherProgramsDoByEachOfTheSignals)
{
    for (const bool withItsChildren : {false, true}) {
        EXPECT_EQ(interrupted(SIGHUP, withItsChildren).status, 129);
        std::filesystem::remove(trace());
        EXPECT_EQ(interrupted(withItsChildren ? SIGTERM : SIGINT, withItsChildren).status, withItsChildren ? 143 : 130);
        std::filesystem::remove(trace());
    }
}

TEST_F(CoverageRuns, GoOnWhereAChildIsKilledAndNameTheTargetThatItHad)
{
    const struct {
        int signal;
        const char* reason;
    } ends[] = {{SIGKILL, "the process that read it was ended by signal 9 (Killed)"},
                {SIGTERM, "the process that read it was ended by signal 15 (Terminated)"}};
    for (const auto& [signal, reason] : ends) {
        const ProcessResult result = childInterrupted(signal);
        EXPECT_EQ(result.status, 1);
        const ordered_json targets = conformingDocument(result.output)["targets"];
        ASSERT_EQ(targets.size(), 50u);
        std::string unread;
        for (const ordered_json& target : targets) {
            if (target["error"].is_null()) {
                EXPECT_EQ(target["counts"]["noFile"], 200) << target["target"];
            } else {
                EXPECT_EQ(target["error"], reason);
                unread += target["target"].get<std::string>() + ": " + reason + "\n";
            }
        }
        EXPECT_EQ(result.errors, "trellan-update: " + unread) << "one target alone";
    }
}

TEST_F(CoverageRuns, EndBySignalsAlsoWhereAChildHangs)
{
    RunningProcess process(TRELLAN_TOOL, words(), folder.path());
    waitUntilItReads();
    for (const pid_t child : process.children()) {
        EXPECT_EQ(::kill(child, SIGSTOP), 0);
    }
    process.send(SIGTERM);
    EXPECT_EQ(process.wait().status, 143);
}

TEST_F(CoverageRuns, GoOnWhereAHangupIsIgnored)
{
    std::vector<std::string> shell = {"-c", "trap '' HUP; exec \"$@\"", "sh", TRELLAN_TOOL};
    const std::vector<std::string> command = shortWords();
    shell.insert(shell.end(), command.begin(), command.end());
    RunningProcess process("/bin/sh", shell, folder.path());
    EXPECT_TRUE(comesTrue([&] { return !process.children().empty(); }));
    process.sendToGroup(SIGHUP);
    const ProcessResult result = process.wait();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(conformingDocument(result.output)["targets"][49]["counts"]["noFile"], 200);
}
