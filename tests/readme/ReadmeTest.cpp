// The README's transcripts and its host program, run as they stand there.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/TempDir.h"

namespace {

namespace fs = std::filesystem;

const fs::path readmePath = fs::path(TRELLAN_SOURCE_DIR) / "README.md";

std::string read(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

// A copy of the example on a virtual clock.
class Example {
public:
    Example()
    {
        fs::copy(fs::path(TRELLAN_SOURCE_DIR) / "examples", folder.path(), fs::copy_options::recursive);
        std::string target = read(folder.path() / "target.json");
        const std::string realClock = "\"clock\": \"real\"";
        target.replace(target.find(realClock), realClock.size(), "\"clock\": \"virtual\"");
        folder.write("target.json", target);
    }

    // Runs a shell command in the example's folder; gives its standard output and exit status.
    std::string run(const std::string& command, int& status) const
    {
        const std::string output = (folder.path() / "output").string();
        const std::string line = "cd " + folder.path().string() + " && { " + command + "; } > " + output;
        status = std::system(line.c_str());
        return read(output);
    }

    fs::path path() const { return folder.path(); }

private:
    TempDir folder;
};

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
            int status = 0;
            result += line + "\n" + example.run(TRELLAN_TOOL + line.substr(prompt.size()), status);
            EXPECT_EQ(status, 0) << line;
        }
    }
    return result;
}

TEST(Readme, ItsTranscriptsAreWhatTheToolPrints)
{
    const Example example;
    const std::string readme = read(readmePath);
    const std::string present = withPresentOutput(readme, example);
    if (std::getenv("TRELLAN_APPROVE") != nullptr) {
        std::ofstream(readmePath, std::ios::binary) << present;
    }
    EXPECT_EQ(read(readmePath), present);
}

TEST(Readme, ItsTranscriptsShowEveryCommand)
{
    const std::string readme = read(readmePath);
    for (const char* const command : {"version", "archive-version", "list", "describe", "installed", "scan", "compare",
                                      "update", "reboot-support"}) {
        EXPECT_NE(readme.find("\n$ trellan-update " + std::string(command)), std::string::npos) << command;
    }
}

TEST(Readme, ItsHostProgramUpdatesTheExample)
{
    const Example example;
    const std::string readme = read(readmePath);
    const std::string fence = "```cpp\n";
    const std::size_t begin = readme.find(fence) + fence.size();
    const fs::path source = example.path() / "host.cpp";
    std::ofstream(source) << readme.substr(begin, readme.find("```", begin) - begin);

    const fs::path library = TRELLAN_LIBRARY;
    const std::string include = (fs::path(TRELLAN_SOURCE_DIR) / "include").string();
    int status = 0;
    example.run(std::string(TRELLAN_COMPILER) + " -std=c++11 -Wall -Wextra -Werror " + TRELLAN_HOST_FLAGS + " -I" +
                    include + " host.cpp -o host " + library.string() + " -Wl,-rpath," +
                    library.parent_path().string() + " -Wl,-rpath-link," + library.parent_path().string(),
                status);
    ASSERT_EQ(status, 0);
    const std::string output =
        example.run("TRELLAN_TARGET=target.json ./host " + (example.path() / "archive").string(), status);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(output, "phase 0\nphase 1\nphase 2\nphase -1\ndone\n");
}

}  // namespace
