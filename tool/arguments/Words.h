// The words of a command line, before anything is made of them.
#pragma once

#include <string>
#include <vector>

namespace TrellanTool {

struct Option;

// An option as it was given, its value empty where it is a flag.
struct GivenOption {
    const Option* option;
    std::string value;
};

// The words sorted into options and the others, which keep their order. It goes on behind a mistake, since the command
// may stand there.
class Words {
public:
    explicit Words(const std::vector<std::string>& typed);

    std::vector<GivenOption> options;
    std::vector<std::string> others;
    bool endsOptions = false;         // there is a "--", behind which nothing is an option
    const Option* waiting = nullptr;  // the option whose value the last word lacks, or null
    std::string mistake;              // the first, or empty
    std::string unknown;  // where that is an option that there is not: its name, with the dashes of a long one

private:
    void refuse(const std::string& text);
    void refuseUnknown(const std::string& word, const std::string& name);
    void readLong(const std::string& word);
    void readShort(const std::string& word);
    void addNextWord(const Option& option);
    void add(const Option& option, std::string value);

    const std::vector<std::string>& typed;
    std::size_t next = 0;
};

}  // namespace TrellanTool
