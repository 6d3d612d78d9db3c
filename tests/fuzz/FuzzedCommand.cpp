#include "FuzzedCommand.h"

using Words = std::vector<std::string>;

namespace {

// In capitals what stands for a path or for the names. An update ends with 10 where the names make it a dry run.
const std::vector<FuzzedCommand> commands = {{{"update", "ARCHIVE"}, {0, 1, 3, 4, 5, 6, 8, 10}, true},
                                             {{"compare", "ARCHIVE"}, {0, 1, 3, 10}},
                                             {{"update", "ARCHIVE", "--dry-run"}, {0, 1, 3, 4, 5, 6, 10}},
                                             {{"explain", "ARCHIVE"}, {0, 1, 3}},
                                             {{"check", "ARCHIVE"}, {0, 1, 3}},
                                             {{"list", "ARCHIVE"}, {0, 3}},
                                             {{"describe", "ARCHIVE"}, {0, 1, 3}},
                                             {{"archive-version", "ARCHIVE"}, {0, 3}},
                                             {{"installed"}, {0, 1, 3}},
                                             {{"scan"}, {0, 1, 3}},
                                             {{"record"}, {0, 1, 3}},
                                             {{"reboot-support"}, {0, 1, 3}},
                                             {{"inspect", "INPUT"}, {0, 1}},
                                             {{"history", "INPUT"}, {0}},
                                             {{"new", "OUTPUT"}, {0, 1, 3}},
                                             {{"coverage", "ARCHIVE", "TARGET"}, {0, 1, 3}},
                                             {{"version"}, {0}},
                                             {{"help"}, {0}},
                                             {{"complete", "--", "update", "ARCHIVE", "--target", "TARGET"}, {0}},
                                             {{"coverage", "ARCHIVE", "TARGET", "ARCHIVE", "INPUT"}, {0, 1, 3}},
                                             {{"inspect", "INPUT", "SECOND", "OUTPUT"}, {0, 1}}};
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

template <class Row>
const Row& chosen(const std::vector<Row>& table, char letter)
{
    return table[static_cast<unsigned char>(letter - 'a') % table.size()];
}

}  // namespace

FuzzedCommand commandOf(std::string_view letters, const std::map<std::string, std::string>& meanings)
{
    FuzzedCommand command = chosen(commands, letters.empty() ? 'a' : letters.front());
    for (const char letter : letters.substr(letters.empty() ? 0 : 1)) {
        const Words& option = chosen(options, letter);
        // No plan of the fuzzer's holds: it would have to say the description's digest.
        command.mayUpdate = command.mayUpdate && option.front() != "--plan";
        command.words.insert(command.words.end(), option.begin(), option.end());
    }
    for (std::string& word : command.words) {
        const auto meaning = meanings.find(word);
        word = meaning == meanings.end() ? word : meaning->second;
    }
    return command;
}
