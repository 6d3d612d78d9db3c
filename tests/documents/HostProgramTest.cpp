// The host program of docs/host.md, compiled and run as it stands there.
#include <gtest/gtest.h>

#include <fstream>

#include "documents/ExampleFolder.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

TEST(HostProgram, UpdatesTheExample)
{
    SKIP_WITHOUT_MOUNT();
    const ExampleFolder example;
    const std::string document = readText(TRELLAN_SOURCE_DIR "/docs/host.md");
    const std::string fence = "```cpp\n";
    const std::size_t begin = document.find(fence) + fence.size();
    const fs::path source = example.path() / "host.cpp";
    std::ofstream(source) << document.substr(begin, document.find("```", begin) - begin);

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
