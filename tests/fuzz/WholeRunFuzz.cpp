// Fuzz entry for whole runs of every command: an input names a command and options, each by a letter, and has behind
// them, each after the character 0x1E, names to filter by, an archive's description, a target, and an update file.
#include <map>
#include <nlohmann/json.hpp>

#include "FuzzedTarget.h"
#include "Fuzzing.h"
#include "ToolRun.h"
#include "support/TempDir.h"
#include "support/TextFile.h"

namespace {

using Words = std::vector<std::string>;

constexpr char end = '\x1E';

// In capitals what stands for a path or for the names.
const std::vector<Words> commands = {{"update", "ARCHIVE"},
                                     {"compare", "ARCHIVE"},
                                     {"update", "ARCHIVE", "--dry-run"},
                                     {"explain", "ARCHIVE"},
                                     {"check", "ARCHIVE"},
                                     {"list", "ARCHIVE"},
                                     {"describe", "ARCHIVE"},
                                     {"archive-version", "ARCHIVE"},
                                     {"installed"},
                                     {"scan"},
                                     {"record"},
                                     {"reboot-support"},
                                     {"inspect", "INPUT"},
                                     {"history", "INPUT"},
                                     {"new", "OUTPUT"},
                                     {"coverage", "ARCHIVE", "TARGET"},
                                     {"version"},
                                     {"help"}};
const std::vector<Words> options = {{"--json"},
                                    {"--verbose"},
                                    {"--force"},
                                    {"--no-check"},
                                    {"--configuration"},
                                    {"--disable-custom-elements"},
                                    {"--exclude", "0"},
                                    {"--board-types", "NAMES"},
                                    {"--serial-numbers", "NAMES"},
                                    {"--element-names", "NAMES"},
                                    {"--verify"},
                                    {"--strict"},
                                    {"--progress", "auto"},
                                    {"--events", "OUTPUT"},
                                    {"--output", "OUTPUT"},
                                    {"--html", "OUTPUT"},
                                    {"--element", "0"},
                                    {"--file", "0"}};

const Words& chosen(const std::vector<Words>& table, char letter)
{
    return table[static_cast<unsigned char>(letter - 'a') % table.size()];
}

Words wordsOf(std::string_view letters, const std::map<std::string, std::string>& meanings)
{
    Words words = chosen(commands, letters.empty() ? 'a' : letters.front());
    for (const char letter : letters.substr(letters.empty() ? 0 : 1)) {
        const Words& option = chosen(options, letter);
        words.insert(words.end(), option.begin(), option.end());
    }
    for (std::string& word : words) {
        const auto meaning = meanings.find(word);
        word = meaning == meanings.end() ? word : meaning->second;
    }
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = textOf(data, size);
    std::string_view rest = input;
    const std::string_view letters = takePart(rest, end).substr(0, 12);
    const std::string names = std::string(takePart(rest, end)).c_str();
    const std::string description(takePart(rest, end));
    const std::string targetText = harmless(std::string(takePart(rest, end)));
    const TempDir folder;
    folder.write("archive/archive.json", description);
    folder.write("archive/a.bin", rest);
    folder.write("archive/b.bin", rest.substr(0, rest.size() / 2));
    const FuzzedTarget target(targetText);
    const std::string path = folder.path().string();
    const Words words = wordsOf(letters, {{"ARCHIVE", path + "/archive"},
                                          {"INPUT", path + "/archive/a.bin"},
                                          {"TARGET", target.path()},
                                          {"OUTPUT", path + "/output"},
                                          {"NAMES", names}});
    const ToolRun run = runTool(words);
    require(run.status <= 6 || run.status == 10, "an exit status that the run can have");
    const bool isUpdate = words.front() == "update" && run.status <= 1;
    const std::string after = readText(target.path());
    require(isUpdate || after == targetText, "nothing but an update changes the target");
    require(nlohmann::json::accept(after) == nlohmann::json::accept(targetText), "a target stays one");
    require(readText(path + "/archive/archive.json") == description, "the description stays as it is");
    require(readText(path + "/archive/a.bin") == rest, "the update files stay as they are");
    return 0;
}
