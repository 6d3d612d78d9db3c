#include "faults/LineFiles.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace {

using nlohmann::ordered_json;
using Names = std::vector<std::string>;

constexpr const char* noLine = "";

// What happens by the line: the value of the last of `first`, which are to be its first members. Empty: it is none.
std::string nameIn(const std::string& line, const Names& first)
{
    const ordered_json object = ordered_json::parse(line, nullptr, false);
    if (!object.is_object() || object.size() < first.size()) {
        return noLine;
    }
    auto member = object.begin();
    for (std::size_t i = 0; i < first.size(); ++i, ++member) {
        if (member.key() != first[i] || !member.value().is_string()) {
            return noLine;
        }
    }
    return object.at(first.back());
}

Names namesIn(const std::string& text, const Names& first)
{
    Names names;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        names.push_back(nameIn(line, first));
    }
    return names;
}

std::string joined(const Names& names)
{
    std::string text;
    for (const std::string& name : names) {
        text += " " + name;
    }
    return text;
}

// Takes what is wrong with the lines, and gives the names in them.
Names check(const std::string& text, const std::string& usual, const Names& first, bool asUsual, Names& faults)
{
    Names names = namesIn(text, first);
    if (std::find(names.begin(), names.end(), noLine) != names.end()) {
        faults.push_back("what is no line of JSON stands in: " + text);
    }
    if (!text.empty() && text.back() != '\n') {
        faults.push_back("the last line is torn: " + text);
    }
    if (const Names usually = namesIn(usual, first); asUsual && names != usually) {
        faults.push_back("in place of" + joined(usually) + " there is" + joined(names));
    }
    return names;
}

}  // namespace

std::vector<std::string> faultsOfEvents(const std::string& text, const std::string& usual, LinesExpected expected)
{
    Names faults;
    const Names names = check(text, usual, {"time", "run", "event"}, expected.asUsual && !expected.lossTold, faults);
    if (!expected.lossTold && !names.empty() && names.back() != "result") {
        faults.push_back("the events end with" + joined(names));
    }
    return faults;
}

std::vector<std::string> faultsOfTrace(const std::string& text, const std::string& usual, LinesExpected expected)
{
    Names faults;
    check(text, usual, {"call"}, expected.asUsual && !expected.lossTold, faults);
    return faults;
}
