#include "simulation/target/TemporaryEnding.h"

#include <algorithm>
#include <random>

namespace TrellanSimulation {

namespace {

constexpr std::size_t endingLength = 6;

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isCapital(char character)
{
    return character >= 'A' && character <= 'Z';
}

bool isSmall(char character)
{
    return character >= 'a' && character <= 'z';
}

}  // namespace

bool isTemporaryEnding(std::string_view ending)
{
    if (ending.size() != endingLength) {
        return false;
    }
    const auto digits = std::count_if(ending.begin() + 1, ending.end(), isDigit);
    const auto capitals = std::count_if(ending.begin() + 1, ending.end(), isCapital);
    return std::all_of(ending.begin(), ending.end(),
                       [](char each) { return isDigit(each) || isCapital(each) || isSmall(each); }) &&
           std::any_of(ending.begin(), ending.end(), isSmall) && capitals >= 1 && capitals + digits >= 2;
}

std::string drawTemporaryEnding()
{
    constexpr std::string_view characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    std::random_device source;
    std::uniform_int_distribution<std::size_t> position(0, characters.size() - 1);
    std::string ending(endingLength, ' ');
    do {
        std::generate(ending.begin(), ending.end(), [&] { return characters[position(source)]; });
    } while (!isTemporaryEnding(ending));
    return ending;
}

}  // namespace TrellanSimulation
