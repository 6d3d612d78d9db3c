// One of the options that select elements, held against what there is to select.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace TrellanTool {

// A list of names as the command line gives it. The library selects what has one of them as its value, a name with
// blanks or commas too; the tool also takes names as they are displayed.
class Filter {
public:
    // `what` is selected, such as "serial number", by the names in `list`.
    Filter(std::string what, std::string list);
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    bool isOff() const { return list.empty(); }

    // Some element has this value, and shows it as `displayed`; empty: it does not show it.
    void note(const std::string& value, const std::string& displayed);

    // Some element has none, for which the library takes this value: it can be selected, but is not named.
    void noteNone(const std::string& value);

    // True when each name of the list is a value that was noted, and none is also what its value is displayed as: other
    // values may be displayed alike then. `displayedApart`: no two values are displayed alike.
    bool isExplained(bool displayedApart) const;

    // The list, with the values behind it that are displayed as one of its names.
    std::string withDisplayedMeant() const;

    // A line for each name that is neither a value nor displayed, with what there is: "nothing has serial number 16;
    // there are 16777232 (16(1)), 4711".
    std::vector<std::string> complaints() const;

private:
    struct Value {
        std::string text;
        std::string displayed;
        bool isNone = false;  // it stands for none
    };

    bool isAmong(const std::string& name) const;
    template <typename Take>
    void eachToken(const std::string& name, Take take) const;
    std::vector<bool> tokensThatSelect(bool asDisplayed) const;
    std::string whatThereIs() const;

    const std::string what;
    const std::string list;
    std::vector<std::string_view> tokens;                                      // of the list
    std::unordered_map<std::string_view, std::vector<std::size_t>> positions;  // in tokens, of each that there is
    std::vector<Value> values;                                                 // each once, as they were noted
    std::unordered_map<std::string, std::size_t> noted;
};

}  // namespace TrellanTool
