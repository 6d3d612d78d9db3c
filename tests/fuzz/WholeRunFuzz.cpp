// Fuzz entry for whole runs of every command: an input names a command and options, each by a letter, and has behind
// them, each after the character 0x1E, names to filter by, an archive's description, a target, and an update file.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "FuzzedCommand.h"
#include "FuzzedTarget.h"
#include "Fuzzing.h"
#include "ToolRun.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

static constexpr char divider = '\x1E';

template <class Value>
static bool contains(const std::vector<Value>& values, const Value& value)
{
    return std::find(values.begin(), values.end(), value) != values.end();
}

static bool isStatusOf(const FuzzedCommand& command, int status)
{
    constexpr int wrongUsage = 2;
    constexpr int updatesAvailable = 10;
    return status == wrongUsage ||
           (contains(command.statuses, status) &&
            (status != updatesAvailable || contains<std::string>(command.words, "--detailed-exit-status")));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = textOf(data, size);
    std::string_view rest = input;
    const std::string_view letters = takePart(rest, divider).substr(0, 12);
    const std::string names = std::string(takePart(rest, divider)).c_str();
    const std::string description(takePart(rest, divider));
    const std::string targetText = harmless(std::string(takePart(rest, divider)));
    const TempDir folder;
    folder.write("archive/archive.json", description);
    folder.write("archive/a.bin", rest);
    folder.write("archive/b.bin", rest.substr(0, rest.size() / 2));
    const FuzzedTarget target(targetText);
    const std::string path = folder.path().string();
    const FuzzedCommand command = commandOf(letters, {{"ARCHIVE", path + "/archive"},
                                                      {"INPUT", path + "/archive/a.bin"},
                                                      {"SECOND", path + "/archive/b.bin"},
                                                      {"TARGET", target.path()},
                                                      {"OUTPUT", path + "/output"},
                                                      {"NAMES", names}});
    const ToolRun run = runTool(command.words);
    require(isStatusOf(command, run.status), "an exit status that the command can have");
    const bool isUpdate = command.mayUpdate && (run.status == 0 || run.status == 1 || run.status == 8);
    const std::string after = readText(target.path());
    require(isUpdate || after == targetText, "nothing but an update changes the target");
    require(nlohmann::json::accept(after) == nlohmann::json::accept(targetText), "a target stays one");
    require(readText(path + "/archive/archive.json") == description, "the description stays as it is");
    require(readText(path + "/archive/a.bin") == rest, "the update files stay as they are");
    return 0;
}
