// Fuzz entry for the option lists: a name before the first line end, and a list behind it.
#include "Fuzzing.h"
#include "inventory/ZoCUpdateInventory.h"

namespace {

bool isSeparator(char character)
{
    return character == ',' || character == ' ';
}

// Whether one of the list's names, taken one by one, is `name`, which has no separator in it.
bool isAmongNames(std::string list, const std::string& name)
{
    for (char& character : list) {
        character = isSeparator(character) ? ',' : character;
    }
    std::string_view rest = list;
    while (!rest.empty()) {
        if (takePart(rest, ',') == name) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input = textOf(data, size);
    std::string_view rest = input;
    const std::string name(takePart(rest, '\n'));
    const std::string list(rest);
    const bool contains = ZoCUpdateInventory::stringListContains(list, name);
    if (name.empty()) {
        require(contains, "the empty name is in every list");
    } else if (name.find_first_of(", ") == std::string::npos) {
        require(contains == isAmongNames(list, name), "a list contains its names and no others");
    } else {
        require(contains == ((" " + list + " ").find(" " + name + " ") != std::string::npos) ||
                    list.find(',') != std::string::npos,
                "a name with blanks in it stands there with separators around it");
    }
    require(ZoCUpdateInventory::stringListContains(list + "," + name, name), "what is added is in the list");
    return 0;
}
