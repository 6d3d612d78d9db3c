// The deepest documents that are taken, with as much stack as docs/host.md says that a thread needs.
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include "CommandLine.h"
#include "support/AnotherProcess.h"
#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TempDir.h"

namespace {

constexpr std::size_t stackSize = std::size_t{256} * 1024;

std::string nestedText(const std::string& front, int times, const std::string& inner, const std::string& back)
{
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += front;
    }
    text += inner;
    for (int i = 0; i < times; ++i) {
        text += back;
    }
    return text;
}

// 512 levels of items, the last one an update element.
std::string deepTarget()
{
    const std::string board =
        R"({"id":"CN","parameters":{"PRODUCT/BOARD_TYPE":"A"},"items":[{"id":"UPDATE_INFO","items":[)"
        R"({"id":"UPDATE_ELEMENT","parameters":{"ID":1,"NAME":"UserFirmware","VERSION":"1.0","CONFIGURATION":0}}]}]})";
    return R"({"clock":"virtual","tree":{"id":"ROOT","items":[)" +
           nestedText(R"({"id":"CN","items":[)", 508, board, "]}") + "]}}";
}

// 512 levels of objects and arrays.
std::string deepDescription()
{
    return R"({"info":{"formatVersion":"1.0","archiveVersion":"2.0","productName":"P","archiveName":"N"},)"
           R"("files":[{"name":"a.bin","sequence":1,"boardType":"A","id":1,"version":null,)"
           R"("checksumCrc32":3421780262,"extra":)" +
           nestedText(R"({"a":)", 509, "1", "}") + "}]}";
}

struct DeepRun {
    const char* name;
    std::vector<std::string> arguments;
};

class SmallStack : public testing::Test {
protected:
    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "what is sanitized takes more stack";
#endif
        folder.write("target.json", deepTarget());
        folder.write("archive/archive.json", deepDescription());
        folder.write("archive/a.bin", "123456789");
    }

    const TempDir folder;
};

class SmallStackOfTheTool : public SmallStack, public testing::WithParamInterface<DeepRun> {};

void PrintTo(const DeepRun& run, std::ostream* out)
{
    *out << run.name;
}

// What a thread runs, and how it ends.
struct ThreadedRun {
    std::vector<std::string> words;
    RunResult result;
};

void* runTool(void* argument)
{
    auto& run = *static_cast<ThreadedRun*>(argument);
    run.result = ran(run.words);
    return nullptr;
}

}  // namespace

TEST_P(SmallStackOfTheTool, SufficesForTheDeepestDocuments)
{
    EXPECT_EQ(inAnotherProcess([&] {
                  const struct rlimit limit = {stackSize, stackSize};
                  return ::setrlimit(RLIMIT_STACK, &limit) != 0
                             ? 255
                             : runProcess(TRELLAN_TOOL, GetParam().arguments, folder.path()).status;
              }),
              0);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, SmallStackOfTheTool,
    testing::Values(DeepRun{"List", {"list", "archive"}}, DeepRun{"Check", {"check", "archive"}},
                    DeepRun{"Describe", {"describe", "archive", "--output", "described.json"}},
                    DeepRun{"Installed", {"installed", "--target", "target.json", "--json"}},
                    DeepRun{"Record", {"record", "--target", "target.json"}},
                    DeepRun{"Explain", {"explain", "archive", "--target", "target.json", "--json"}},
                    DeepRun{"DryRun", {"update", "archive", "--target", "target.json", "--dry-run", "--json"}},
                    DeepRun{"Update", {"update", "archive", "--target", "target.json", "--verify"}},
                    DeepRun{"Coverage", {"coverage", "archive", "target.json", "--json"}}),
    [](const auto& run) { return run.param.name; });

TEST_F(SmallStack, SufficesForAHostsThread)
{
    ThreadedRun run = {
        {"update", (folder.path() / "archive").string(), "--target", (folder.path() / "target.json").string()}, {}};
    pthread_attr_t attributes;
    ASSERT_EQ(::pthread_attr_init(&attributes), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, stackSize), 0);
    pthread_t thread = {};
    ASSERT_EQ(::pthread_create(&thread, &attributes, runTool, &run), 0);
    ASSERT_EQ(::pthread_join(thread, nullptr), 0);
    ::pthread_attr_destroy(&attributes);
    EXPECT_EQ(run.result.status, 0) << run.result.err;
}
