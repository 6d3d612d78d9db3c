#include "FuzzedCommand.h"

using Words = std::vector<std::string>;

namespace {

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
                                     {"help"},
                                     {"complete", "--", "update", "ARCHIVE", "--target", "TARGET"},
                                     {"coverage", "ARCHIVE", "TARGET", "ARCHIVE", "INPUT"},
                                     {"inspect", "INPUT", "SECOND", "OUTPUT"}};
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
                                    {"--file", "0"},
                                    {"--plan", "INPUT"},
                                    {"--quiet"},
                                    {"--stall-timeout", "10"},
                                    {"--detailed-exit-status"},
                                    {"--description", "b.bin"},
                                    {"--exclude", "NAMES"},
                                    {"NAMES"}};

const Words& chosen(const std::vector<Words>& table, char letter)
{
    return table[static_cast<unsigned char>(letter - 'a') % table.size()];
}

}  // namespace

Words commandOf(std::string_view letters, const std::map<std::string, std::string>& meanings)
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
