#include "tool/completion/ListCompletion.h"

namespace TrellanTool {

namespace {

bool endsAName(char letter)
{
    return letter == ' ' || letter == ',';
}

bool beginsAt(std::size_t at, const std::string& list)
{
    return at == 0 || endsAName(list[at - 1]);
}

// Whether the list has the name before `end`.
bool has(const std::string& list, std::size_t end, const std::string& name)
{
    for (std::size_t at = list.find(name); at < end; at = list.find(name, at + 1)) {
        const std::size_t behind = at + name.size();
        if (beginsAt(at, list) && behind <= end && (behind == list.size() || endsAName(list[behind]))) {
            return true;
        }
    }
    return false;
}

// Where in the list the name begins that `name` goes on from: as early as it can be. npos: nowhere.
std::size_t beginOf(const std::string& name, const std::string& list)
{
    for (std::size_t at = 0; at <= list.size(); ++at) {
        if (beginsAt(at, list) && name.starts_with(list.substr(at))) {
            return at;
        }
    }
    return std::string::npos;
}

}  // namespace

std::vector<Candidate> completedLists(const std::string& list, const std::vector<Candidate>& names)
{
    std::vector<Candidate> completed;
    for (const Candidate& name : names) {
        const std::size_t begin = beginOf(name.word, list);
        if (begin != std::string::npos && !has(list, begin, name.word)) {
            completed.push_back({list.substr(0, begin) + name.word, name.meaning});
        }
    }
    return completed;
}

}  // namespace TrellanTool
