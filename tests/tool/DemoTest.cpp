// The demonstration of the example, as `./dev demo` runs it.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "support/BuildTree.h"
#include "support/FileTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

class Demo : public testing::Test {
protected:
    void SetUp() override { SKIP_WITHOUT_MOUNT(); }
};

// The demonstration's output, run with `options` and on a virtual clock, the tool being in `build`.
std::string demo(const std::vector<std::string>& options, const std::string& build = "build")
{
    const TempDir folder;
    copyTree(TRELLAN_SOURCE_DIR "/examples", folder.path());
    auto target = nlohmann::ordered_json::parse(readText(folder.path() / "target.json"));
    target["clock"] = "virtual";
    writeText(folder.path() / "target.json", target.dump());
    fs::create_directories(folder.path() / build / "bin");
    fs::create_symlink(TRELLAN_TOOL, folder.path() / build / "bin/trellan-update");
    std::vector<std::string> arguments = {"demo.sh", build};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const ProcessResult result = runProcess("/bin/bash", arguments, folder.path());
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
}

}  // namespace

TEST_F(Demo, TellsWhatTheExampleShows)
{
    EXPECT_NE(demo({}).find("\nShown: a target with four boards was updated in three phases, and a second update found "
                            "nothing left to do.\nBy hand: "),
              std::string::npos);
}

TEST_F(Demo, WorksElsewhereWhenTheBuildFoldersPathHoldsABlank)
{
    const std::string output = demo({}, "my build");
    const std::string prefix = "the copy of the example is in ";
    const std::size_t begin = output.find(prefix) + prefix.size();
    const std::string copy = output.substr(begin, output.find('\n') - begin);
    EXPECT_TRUE(copy.starts_with("/tmp/trellan-demo-")) << output;
    EXPECT_NE(output.find("\nBy hand: my\\ build/bin/trellan-update compare " + copy + "/archive --target " + copy +
                          "/target.json "),
              std::string::npos)
        << output;
    if (copy.starts_with("/tmp/trellan-demo-")) {
        fs::remove_all(copy);
    }
}

TEST_F(Demo, ClaimsNothingAboutAnUpdateWithOptions)
{
    EXPECT_TRUE(demo({"--force", "--no-progress"})
                    .ends_with("\nShown: two updates of the example target with the options --force --no-progress\n"));
}
