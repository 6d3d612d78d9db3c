// The developer's commands.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "support/BuildTree.h"
#include "support/Process.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

namespace fs = std::filesystem;

namespace {

// A project folder with the script "dev" whose tools are replaced by scripts.
class Dev : public testing::Test {
protected:
    Dev()
    {
        fs::copy(TRELLAN_SOURCE_DIR "/dev", folder.path() / "dev");
        folder.write("packages.txt", "");
        script("tools/cmake", "exit 0");
    }

    void script(const std::string& name, const std::string& commands) const
    {
        fs::permissions(folder.write(name, "#!/bin/sh\n" + commands + "\n"), fs::perms::owner_all);
    }

    // Replaces the tools that build, test and install by some that write their call to the file "calls".
    void recordCalls() const
    {
        script("tools/cmake", "echo cmake $* >>calls");
        script("tools/ctest", "echo ctest $* | sed 's/ -j [0-9]*//' >>calls");
        script("tools/apt-get", "echo apt-get $* | sed 's/ -[^ ]*//g' >>calls");
    }

    // Clang's fuzzer, and two of the project's that print how they were called.
    void giveFuzzers() const
    {
        script("tools/clang++", "echo resources");
        folder.write("resources/lib/linux/libclang_rt.fuzzer-x86_64.a", "");
        for (const auto& [name, program] : {std::pair("plan", "fuzz_plan"), {"whole-run", "fuzz_whole_run"}}) {
            const std::string finds = std::string("build/fuzz/finds/") + name;
            folder.write(std::string("tests/fuzz/corpus/") + name + "/seed", "");
            script(std::string("build/fuzz/bin/") + program, "test -d " + finds + " && test -d $TMPDIR && echo \"$*\"");
        }
    }

    // What is exported of a file: its counts, each "count" and "covered", and how often what it has was run.
    nlohmann::json counted(const std::string& name, std::array<int, 2> lines, std::array<int, 2> branches,
                           const nlohmann::json& segments = nlohmann::json::array(),
                           const nlohmann::json& outcomes = nlohmann::json::array()) const
    {
        if (!fs::exists(folder.path() / name)) {
            folder.write(name, "");
        }
        return {{"filename", (folder.path() / name).string()},
                {"segments", segments},
                {"branches", outcomes},
                {"summary",
                 {{"lines", {{"count", lines[0]}, {"covered", lines[1]}}},
                  {"branches", {{"count", branches[0]}, {"covered", branches[1]}}}}}};
    }

    // Programs that were counted, and tools that export `files`.
    void giveCoverage(const nlohmann::json& files) const
    {
        fs::create_directories(folder.path() / "cmake");
        fs::copy(TRELLAN_SOURCE_DIR "/cmake/coverage.py", folder.path() / "cmake" / "coverage.py",
                 fs::copy_options::overwrite_existing);
        script("build/coverage/bin/trellan-update",
               "mkdir build/coverage/profiles && >build/coverage/profiles/a.profraw");
        script("build/coverage/lib/counted.so", "");
        script("tools/ctest", "exit 0");
        script("tools/readelf", "echo __llvm_covmap");
        script("tools/llvm-profdata", "test -f build/coverage/profiles/a.profraw");
        folder.write("export", nlohmann::json({{"data", {{{"files", files}}}}}).dump());
        script("tools/llvm-cov", "cat export");
    }

    std::string calls() const { return readText(folder.path() / "calls"); }

    ProcessResult dev(const std::string& command) const
    {
        const std::string line = "PATH=$PWD/tools:$PATH && exec ./dev " + command;
        return runProcess("/bin/sh", {"-c", line}, folder.path());
    }

    TempDir folder;
};

}  // namespace

TEST_F(Dev, ApproveRewritesTheDocumentsEvenWhenAScenarioFails)
{
    script("build/release/bin/test_scenarios", "exit 1");
    script("build/release/bin/test_documents", "echo \"approve $TRELLAN_APPROVE\"");
    const ProcessResult result = dev("approve");
    EXPECT_EQ(result.output, "approve 1\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(Dev, ApproveSucceedsWhenBothDo)
{
    script("build/release/bin/test_scenarios", "exit 0");
    script("build/release/bin/test_documents", "exit 0");
    EXPECT_EQ(dev("approve").status, 0);
    script("build/release/bin/test_documents", "exit 1");
    EXPECT_EQ(dev("approve").status, 1);
}

TEST_F(Dev, KilledTakesEverySystemCallAnd500MomentsAndFailsWhereATestDoes)
{
    script("build/release/bin/test_killed", "echo $TRELLAN_KILL_EVERY $TRELLAN_KILL_MOMENTS");
    const ProcessResult passed = dev("killed");
    EXPECT_EQ(passed.output, "1 500\n1 500\n1 500\n");
    EXPECT_EQ(passed.status, 0);
    script("build/release/bin/test_killed", "case $* in *Moment*) exit 1 ;; esac");
    EXPECT_EQ(dev("killed").status, 1);
}

TEST_F(Dev, PowerCutLooksAt1000States)
{
    script("build/release/bin/test_power", "echo $TRELLAN_POWER_CUTS $*");
    EXPECT_EQ(dev("power-cut").output, "1000 --gtest_filter=PowerCut.Leaves*\n");
    script("build/release/bin/test_power", "exit 1");
    EXPECT_EQ(dev("power-cut").status, 1);
}

TEST_F(Dev, ThreadsRunsTheTestsThatAreBuiltForThat)
{
    recordCalls();
    script("build/thread/bin/test_threads", "echo tested >>calls; exit 66");
    EXPECT_EQ(dev("threads").status, 66);
    EXPECT_EQ(calls(), "cmake --preset thread\ncmake --build --preset thread\ntested\n");
}

TEST_F(Dev, MutateHandsItsOptionsOnAndFailsWhereTooMuchSurvived)
{
    script("tools/python3", "echo $*; exit 1");
    const ProcessResult result = dev("mutate --count 3 tool/Streams.cpp");
    EXPECT_EQ(result.output, "-B tests/mutation/mutate.py --count 3 tool/Streams.cpp\n");
    EXPECT_EQ(result.status, 1);
}

TEST_F(Dev, ReferenceFailsWhereDoxygenFindsSomething)
{
    script("tools/doxygen", "test -d build/reference && echo $*");
    EXPECT_EQ(dev("reference").output, "docs/Doxyfile\n");
    script("tools/doxygen", "exit 1");
    EXPECT_EQ(dev("reference").status, 1);
}

TEST_F(Dev, CoverageTellsWhatRanOfEachFolderAndListsWhatDidNot)
{
    folder.write("src/a.cpp", "int f()\n{\n    if (a && b) {\n        lost();\n    }\n    return x || y;\n}\n");
    // Two instances of a template: `a` was false in one alone, `b` never; of `x` nothing is known.
    const nlohmann::json segments = {{2, 1, 7, true, true, false},
                                     {3, 17, 0, true, true, true},
                                     {3, 17, 0, true, true, false},
                                     {5, 6, 7, true, false, false},
                                     {7, 2, 0, false, false, false}};
    const nlohmann::json outcomes = {{3, 9, 3, 10, 7, 0, 0, 0, 4},  {3, 9, 3, 10, 4, 2, 0, 0, 4},
                                     {3, 14, 3, 15, 0, 7, 0, 0, 4}, {3, 14, 3, 15, 0, 4, 0, 0, 4},
                                     {6, 12, 6, 13, 0, 0, 0, 0, 4}, {6, 17, 6, 18, 5, 0, 0, 0, 4}};
    giveCoverage({counted("src/a.cpp", {100, 97}, {2, 1}, segments, outcomes),
                  counted("src/b.cpp", {100, 98}, {23, 22}), counted("simulation/c.cpp", {20, 19}, {2, 0}),
                  counted("tool/d.cpp", {20, 20}, {0, 0})});
    const ProcessResult passed = dev("coverage");
    EXPECT_EQ(passed.output,
              "src          97.50 % of   200 lines (limit 97),  92.00 % of    25 branches (limit 92)\n"
              "simulation   95.00 % of    20 lines (limit 95),   0.00 % of     2 branches (limit -)\n"
              "tool        100.00 % of    20 lines (limit 95),   0.00 % of     0 branches (limit -)\n");
    EXPECT_EQ(passed.status, 0) << passed.errors;
    EXPECT_EQ(readText(folder.path() / "build/coverage/uncovered.txt"),
              "src/a.cpp:3: never true: b\nsrc/a.cpp:4: not run: lost();\nsrc/a.cpp:5: not run: }\nsrc/a.cpp:6: never "
              "false: y\n");
}

TEST_F(Dev, CoverageFailsBelowALimitAndWhereATestFails)
{
    giveCoverage({counted("src/a.cpp", {100, 100}, {1000, 919}), counted("simulation/c.cpp", {100, 95}, {0, 0}),
                  counted("tool/d.cpp", {1000, 949}, {0, 0})});
    const ProcessResult low = dev("coverage");
    EXPECT_EQ(low.output,
              "src         100.00 % of   100 lines (limit 97),  91.90 % of  1000 branches (limit 92): too few\n"
              "simulation   95.00 % of   100 lines (limit 95),   0.00 % of     0 branches (limit -)\n"
              "tool         94.90 % of  1000 lines (limit 95),   0.00 % of     0 branches (limit -): too few\n");
    EXPECT_EQ(low.status, 1);
    giveCoverage({counted("src/a.cpp", {1, 1}, {1, 1}), counted("simulation/c.cpp", {1, 1}, {0, 0}),
                  counted("tool/d.cpp", {1, 1}, {0, 0})});
    EXPECT_EQ(dev("coverage").status, 0);
    script("tools/ctest", "exit 8");
    EXPECT_EQ(dev("coverage").status, 1);
}

TEST_F(Dev, BuildLeavesNothingBesideTheBuildFolder)
{
    script("tools/cmake", "kill -KILL $PPID");
    EXPECT_NE(dev("build").status, 0);
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"build", "dev", "packages.txt", "tools"}));
}

TEST_F(Dev, BuildShowsWhyConfiguringFailed)
{
    script("tools/cmake", "echo reason; exit 1");
    const ProcessResult result = dev("build");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "reason\n");
}

TEST_F(Dev, AMistakeIsNamedAndNothingIsDone)
{
    script("tools/cmake", "touch built");
    const std::vector<std::pair<std::string, std::string>> mistakes = {
        {"nonsense", "'nonsense' is no command"},
        {"build tool", "nothing is expected behind build, and not 'tool'"},
        {"setup now", "nothing is expected behind setup, and not 'now'"},
        {"approve all", "nothing is expected behind approve, and not 'all'"},
        {"package tool", "nothing is expected behind package, and not 'tool'"},
        {"abi now", "behind abi only 'record' is expected, and not 'now'"},
        {"format tool", "nothing is expected behind format, and not 'tool'"},
        {"bench read write", "nothing is expected behind the filter, and not 'write'"},
        {"help test", "nothing is expected behind help, and not 'test'"},
    };
    for (const auto& [command, mistake] : mistakes) {
        const ProcessResult result = dev(command);
        EXPECT_EQ(result.status, 2) << command;
        EXPECT_EQ(result.output, "") << command;
        EXPECT_EQ(result.errors, "./dev: " + mistake + "\nSee ./dev help.\n");
    }
    EXPECT_FALSE(fs::exists(folder.path() / "built"));
}

TEST_F(Dev, BenchPrintsTheTableOfWhatItHasMeasured)
{
    recordCalls();
    script("build/release/bin/trellan-bench", "echo $* >>calls; echo results >build/bench/benchmarks.json");
    script("bench/table.py", "echo table of; cat $1");
    const ProcessResult result = dev("bench '^read/'");
    EXPECT_EQ(result.output, "table of\nresults\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(calls(),
              "cmake --preset release\n"
              "cmake --build --preset release --target trellan-bench\n"
              "--benchmark_out=build/bench/benchmarks.json --benchmark_repetitions=5 --benchmark_min_time=0.02 "
              "--benchmark_filter=^read/\n");
}

TEST_F(Dev, BenchPrintsNoTableWhereABenchmarkFails)
{
    script("build/release/bin/trellan-bench", "exit 134");
    script("bench/table.py", "echo table");
    const ProcessResult result = dev("bench");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 134);
}

TEST_F(Dev, TestBuildsAndRunsEverythingOptimisedAndUnderTheSanitizers)
{
    recordCalls();
    EXPECT_EQ(dev("test").status, 0);
    EXPECT_EQ(calls(),
              "cmake --preset release\n"
              "cmake --build --preset release\n"
              "ctest --preset release --no-tests=error\n"
              "cmake --preset sanitize\n"
              "cmake --build --preset sanitize\n"
              "ctest --preset sanitize --no-tests=error\n");
}

TEST_F(Dev, TestOfAFolderBuildsItsProgramAlone)
{
    recordCalls();
    for (const char* const name : {"archive", "tool", "structure"}) {
        fs::create_directories(folder.path() / "tests" / name);
    }
    const std::vector<std::array<std::string, 3>> cases = {
        {"tool", " --target test_tool", "^tool/"},
        {"tool/Usage", " --target test_tool", "^tool/Usage"},
        {"tool archive/Info.", " --target test_tool test_archive", "^tool/|^archive/Info."},
        {"Usage", "", "Usage"},
        {"tool Usage", "", "^tool/|Usage"},
        {"structure/format", "", "^structure/format"},
    };
    for (const auto& [names, targets, patterns] : cases) {
        EXPECT_EQ(dev("test " + names).status, 0);
        EXPECT_TRUE(calls().starts_with("cmake --preset release\ncmake --build --preset release" + targets +
                                        "\nctest --preset release --no-tests=error -R " + patterns + "\n"))
            << calls();
        fs::remove(folder.path() / "calls");
    }
}

TEST_F(Dev, AFailedTestEndsWithItsStatus)
{
    script("tools/ctest", "exit 8");
    EXPECT_EQ(dev("test").status, 8);
}

TEST_F(Dev, TestInstallTellsWhatFailedAndWhatCouldNotBeRun)
{
    recordCalls();
    script("tests/install/alone.sh", "echo $(basename $1) $(basename $2) >>calls");
    script("tests/install/torn.sh", "echo what is wrong; exit 1");
    script("tests/install/unrun.sh", "echo looking; echo a reason; exit 77");
    const ProcessResult whole = dev("test-install");
    EXPECT_EQ(whole.status, 1);
    EXPECT_EQ(whole.output, "passed: alone\nNOT RUN: unrun: a reason\n");
    EXPECT_EQ(whole.errors, "FAILED: torn\nwhat is wrong\n");
    EXPECT_EQ(calls(), "cmake --preset release\ncmake --build --preset release --target trellan-update\n" +
                           folder.path().filename().string() + " release\n");
    EXPECT_EQ(dev("test-install alone unrun").status, 0);
    EXPECT_EQ(dev("test-install alone nothing").errors,
              "./dev: there is no test of the installation 'nothing'\nSee ./dev help.\n");
}

TEST_F(Dev, PackageConfiguresForTheSystemsFoldersMeanwhile)
{
    recordCalls();
    script("tools/dpkg-parsechangelog", "echo 1700000000");
    script("tools/cpack",
           "echo cpack $* at $SOURCE_DATE_EPOCH >>calls; mkdir -p build/packages; touch build/packages/one.deb");
    folder.write("build/packages/old.deb", "");
    const ProcessResult result = dev("package");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_EQ(result.output, "one.deb\n");
    EXPECT_EQ(calls(),
              "cmake --preset package\n"
              "cmake --build --preset package\n"
              "cpack --config build/release/CPackConfig.cmake at 1700000000\n"
              "cmake --preset release\n"
              "cmake --build --preset release --target trellan-update\n");
}

TEST_F(Dev, PackageShowsWhyItFailed)
{
    recordCalls();
    script("tools/dpkg-parsechangelog", "echo 1700000000");
    script("tools/cpack", "echo what is wrong; exit 1");
    const ProcessResult result = dev("package");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.errors, "what is wrong\n");
    EXPECT_TRUE(calls().ends_with("cmake --preset release\ncmake --build --preset release --target trellan-update\n"))
        << calls();
}

TEST_F(Dev, ReproducibleFailsWhereThePackagesOfTwoFoldersDiffer)
{
    script("tools/git", "printf 'dev\\0packages.txt\\0'");
    script("tools/dpkg-parsechangelog", "echo 1700000000");
    script("tools/cpack", "mkdir -p build/packages; echo same >build/packages/one.deb");
    const ProcessResult same = dev("reproducible");
    EXPECT_EQ(same.status, 0) << same.errors;
    script("tools/cpack", "mkdir -p build/packages; pwd >build/packages/one.deb");
    const ProcessResult different = dev("reproducible");
    EXPECT_EQ(different.status, 1);
    EXPECT_NE(different.output.find("one.deb: FAILED\n"), std::string::npos) << different.output;
}

TEST_F(Dev, DemoBuildsTheToolAloneAndInstallsWhatThatTakes)
{
    recordCalls();
    folder.write("packages.txt", "# Both:\n[build] for the tool\nabsent-compiler\n\n[develop]\nabsent-checker\n");
    script("tools/dpkg-query", "exit 1");
    script("tools/sudo", "exec \"$@\"");
    script("examples/demo.sh", "echo demo.sh $* >>calls");
    EXPECT_EQ(dev("demo --force").status, 0);
    EXPECT_EQ(calls(),
              "apt-get update\n"
              "apt-get install absent-compiler\n"
              "cmake --preset demo\n"
              "cmake --build --preset demo\n"
              "demo.sh build/demo --force\n");
}

TEST_F(Dev, SetupInstallsWhatIsMissingInAllSections)
{
    recordCalls();
    folder.write("packages.txt", "[build] for the tool\nthere\nabsent-compiler\n[develop]\nabsent-checker\n");
    script("tools/dpkg-query", "test \"$4\" != there || echo 'install ok installed'");
    script("tools/sudo", "exec \"$@\"");
    EXPECT_EQ(dev("setup").output, "Installing: absent-compiler absent-checker\n");
    EXPECT_EQ(calls(), "apt-get update\napt-get install absent-compiler absent-checker\n");
}

TEST_F(Dev, FuzzSaysWhatToInstallWithoutClang)
{
    const std::string missing =
        "./dev fuzz: install clang and its fuzzer first: apt-get install clang libclang-rt-14-dev\n";
    script("tools/clang++", "exit 127");
    const ProcessResult withoutClang = dev("fuzz");
    EXPECT_EQ(withoutClang.status, 1);
    EXPECT_EQ(withoutClang.errors, missing);
    script("tools/clang++", "echo resources");
    const ProcessResult withoutFuzzer = dev("fuzz");
    EXPECT_EQ(withoutFuzzer.status, 1);
    EXPECT_EQ(withoutFuzzer.errors, missing);
}

TEST_F(Dev, FuzzKeepsWhatItFindsOutOfTheCommittedCorpus)
{
    giveFuzzers();
    const auto run = [](const std::string& name, const std::string& seconds) {
        return "-max_total_time=" + seconds +
               " -max_len=4096 -timeout=60 -print_final_stats=1 -artifact_prefix=build/fuzz/" + name +
               "- build/fuzz/finds/" + name + " tests/fuzz/corpus/" + name + "\n";
    };
    EXPECT_EQ(dev("fuzz").output, run("plan", "60") + run("whole-run", "60"));
    EXPECT_EQ(dev("fuzz 5").output, run("plan", "5") + run("whole-run", "5"));
    EXPECT_EQ(dev("fuzz whole-run").output, run("whole-run", "60"));
    EXPECT_EQ(dev("fuzz plan 7").output, run("plan", "7"));
}

TEST_F(Dev, FuzzGoesOnBehindAFindAndFailsAtTheEnd)
{
    giveFuzzers();
    script("build/fuzz/bin/fuzz_plan", "echo found; exit 77");
    script("build/fuzz/bin/fuzz_whole_run", "echo ran");
    const ProcessResult result = dev("fuzz 1");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "found\nran\n");
}

TEST_F(Dev, FuzzNamesTheFuzzersThatThereAre)
{
    giveFuzzers();
    const ProcessResult unknown = dev("fuzz plans");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, "./dev: there is no fuzzer 'plans', but plan whole-run\nSee ./dev help.\n");
    EXPECT_EQ(dev("fuzz plan soon").errors, "./dev: 'soon' is no number of seconds\nSee ./dev help.\n");
    EXPECT_EQ(dev("fuzz 5 plan").status, 2);
}

TEST_F(Dev, HelpTellsWhatApproveRewritesAndWhereTheDemosOptionsGo)
{
    const std::string help = dev("help").output;
    EXPECT_NE(help.find("the documents' commands print now as their transcripts"), std::string::npos) << help;
    EXPECT_NE(help.find("options behind it are passed to the tool's update"), std::string::npos) << help;
}
