// The host programs of docs/host.md, compiled and run as they stand there.
#include <gtest/gtest.h>

#include <fstream>

#include "documents/ExampleFolder.h"
#include "support/BuildTree.h"
#include "support/Namespaces.h"
#include "support/Process.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

// Compiles the program number `number` of the document, counted from 0, in the example's folder as "program".
ProcessResult compileProgram(const ExampleFolder& example, unsigned number)
{
    const std::string document = readText(TRELLAN_SOURCE_DIR "/docs/host.md");
    const std::string fence = "```cpp\n";
    std::size_t begin = 0;
    for (unsigned i = 0; i <= number; ++i) {
        begin = document.find(fence, begin) + fence.size();
    }
    const fs::path source = example.path() / "program.cpp";
    std::ofstream(source) << document.substr(begin, document.find("```", begin) - begin);

    const fs::path library = TRELLAN_LIBRARY;
    const std::string libraries = library.parent_path().string();
    std::vector<std::string> arguments = {"-std=c++11", "-Wall", "-Wextra", "-Werror"};
    arguments.insert(arguments.end(),
                     {"-I" TRELLAN_SOURCE_DIR "/include", "program.cpp", "-o", "program", library.string()});
    for (const char* const option : {"-rpath", "-rpath-link"}) {
        arguments.insert(arguments.end(), {"-Xlinker", option, "-Xlinker", libraries});
    }
    if (*TRELLAN_HOST_FLAGS != '\0') {
        arguments.push_back(TRELLAN_HOST_FLAGS);
    }
    return runProcess(TRELLAN_COMPILER, arguments, example.path());
}

ProcessResult runProgram(const ExampleFolder& example)
{
    return runProcess(example.path() / "program", {(example.path() / "archive").string()}, example.path(),
                      {"TRELLAN_TARGET=target.json"});
}

}  // namespace

TEST(HostProgram, UpdatesTheExample)
{
    SKIP_WITHOUT_MOUNT();
    const ExampleFolder example;
    const ProcessResult compiled = compileProgram(example, 0);
    ASSERT_EQ(compiled.status, 0) << compiled.errors;
    const ProcessResult hosted = runProgram(example);
    EXPECT_EQ(hosted.status, 0) << hosted.errors;
    EXPECT_EQ(hosted.output, "phase 0\nphase 1\nphase 2\nphase -1\ndone\n");
}

TEST(HostProgram, UpdatesTheExampleWithTheHeaderForHosts)
{
    SKIP_WITHOUT_MOUNT();
    const ExampleFolder example;
    const ProcessResult compiled = compileProgram(example, 1);
    ASSERT_EQ(compiled.status, 0) << compiled.errors;
    const ProcessResult hosted = runProgram(example);
    EXPECT_EQ(hosted.status, 0) << hosted.errors;
    EXPECT_EQ(hosted.output, "done\n");
    const auto device = nlohmann::json::parse(readText(example.path() / "target.json"));
    EXPECT_EQ(device.at("/tree/items/0/items/0/items/0/parameters/VERSION"_json_pointer), "23.2");
}

TEST(HostProgram, ChecksAndVerifiesTheExample)
{
    SKIP_WITHOUT_MOUNT();
    const ExampleFolder example;
    const ProcessResult compiled = compileProgram(example, 2);
    ASSERT_EQ(compiled.status, 0) << compiled.errors;

    const std::string name = "ai-cpld.bin";
    const std::string content = readText(example.path() / "archive" / name);
    fs::remove(example.path() / "archive" / name);
    const ProcessResult refused = runProgram(example);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.output, "ai-cpld.bin: the archive's folder has no such file: add it, or correct the name\n");

    writeText(example.path() / "archive" / name, content);
    const ProcessResult hosted = runProgram(example);
    EXPECT_EQ(hosted.status, 0) << hosted.errors;
    EXPECT_EQ(hosted.output, "12 agree, 0 differ\n");
}
