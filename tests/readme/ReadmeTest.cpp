// The README's transcripts and its host program, run as they stand there. With TRELLAN_APPROVE=1 in the environment the
// README gets the transcripts that are printed now, unless a command fails.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/FileTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

namespace {

namespace fs = std::filesystem;

const fs::path readmePath = fs::path(TRELLAN_SOURCE_DIR) / "README.md";

// A copy of the example on a virtual clock.
class Example {
public:
    Example()
    {
        copyTree(TRELLAN_SOURCE_DIR "/examples", folder.path());
        std::string target = readText(folder.path() / "target.json");
        const std::string realClock = "\"clock\": \"real\"";
        target.replace(target.find(realClock), realClock.size(), "\"clock\": \"virtual\"");
        folder.write("target.json", target);
    }

    // Runs a shell command in the example's folder, where the tool is found by its name.
    ProcessResult run(const std::string& command) const
    {
        const std::string tools = fs::path(TRELLAN_TOOL).parent_path().string();
        return runProcess("/bin/sh", {"-c", "PATH=$0:$PATH; " + command, tools}, path());
    }

    fs::path path() const { return folder.path(); }

private:
    TempDir folder;
};

bool approving()
{
    const char* const value = std::getenv("TRELLAN_APPROVE");
    return value != nullptr && std::string(value) == "1";
}

// The README with the output of every "$ trellan-update" line in it as it is printed now.
std::string withPresentOutput(const std::string& readme, const Example& example)
{
    const std::string prompt = "$ trellan-update";
    std::istringstream lines(readme);
    std::string result;
    bool inTranscript = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "```console") {
            inTranscript = true;
            result += line + "\n";
        } else if (line == "```") {
            inTranscript = false;
            result += line + "\n";
        } else if (!inTranscript) {
            result += line + "\n";
        } else if (line.starts_with(prompt)) {
            const ProcessResult present = example.run(line.substr(2));
            result += line + "\n" + present.output;
            EXPECT_EQ(present.status, 0) << line;
            EXPECT_EQ(present.errors, "") << line;
        }
    }
    return result;
}

TEST(Readme, ItsTranscriptsAreWhatTheToolPrints)
{
    SKIP_WITHOUT_MOUNT();
    const Example example;
    const std::string readme = readText(readmePath);
    const std::string present = withPresentOutput(readme, example);
    if (approving() && !HasFailure()) {
        writeText(readmePath, present);
    }
    EXPECT_EQ(readText(readmePath), present);
}

TEST(Readme, ItsTranscriptsShowEveryCommand)
{
    const std::string readme = readText(readmePath);
    for (const char* const command : {"version", "archive-version", "list", "describe", "installed", "scan", "compare",
                                      "update", "reboot-support"}) {
        EXPECT_NE(readme.find("\n$ trellan-update " + std::string(command)), std::string::npos) << command;
    }
}

TEST(Readme, ItsHostProgramUpdatesTheExample)
{
    SKIP_WITHOUT_MOUNT();
    const Example example;
    const std::string readme = readText(readmePath);
    const std::string fence = "```cpp\n";
    const std::size_t begin = readme.find(fence) + fence.size();
    const fs::path source = example.path() / "host.cpp";
    std::ofstream(source) << readme.substr(begin, readme.find("```", begin) - begin);

    const fs::path library = TRELLAN_LIBRARY;
    const std::string libraries = library.parent_path().string();
    std::vector<std::string> arguments = {"-std=c++11", "-Wall", "-Wextra", "-Werror"};
    arguments.insert(arguments.end(), {"-I" TRELLAN_SOURCE_DIR "/include", "host.cpp", "-o", "host", library.string()});
    for (const char* const option : {"-rpath", "-rpath-link"}) {
        arguments.insert(arguments.end(), {"-Xlinker", option, "-Xlinker", libraries});
    }
    if (*TRELLAN_HOST_FLAGS != '\0') {
        arguments.push_back(TRELLAN_HOST_FLAGS);
    }
    const ProcessResult compiled = runProcess(TRELLAN_COMPILER, arguments, example.path());
    ASSERT_EQ(compiled.status, 0) << compiled.errors;
    const ProcessResult hosted = runProcess(example.path() / "host", {(example.path() / "archive").string()},
                                            example.path(), {"TRELLAN_TARGET=target.json"});
    EXPECT_EQ(hosted.status, 0) << hosted.errors;
    EXPECT_EQ(hosted.output, "phase 0\nphase 1\nphase 2\nphase -1\ndone\n");
}

}  // namespace
