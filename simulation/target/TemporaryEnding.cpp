#include "simulation/target/TemporaryEnding.h"

#include <zlib.h>

#include <algorithm>
#include <random>

namespace TrellanSimulation {

namespace {

constexpr std::size_t drawnLength = 4;
constexpr std::size_t endingLength = 6;
constexpr std::string_view characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

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

bool isMixed(std::string_view ending)
{
    const auto digits = std::count_if(ending.begin() + 1, ending.end(), isDigit);
    const auto capitals = std::count_if(ending.begin() + 1, ending.end(), isCapital);
    return std::any_of(ending.begin(), ending.end(), isSmall) && capitals >= 1 && capitals + digits >= 2;
}

std::string withChecksum(std::string_view drawn)
{
    const uLong sum = ::crc32_z(0, reinterpret_cast<const Bytef*>(drawn.data()), drawn.size());
    std::string ending(drawn);
    ending += characters[sum / characters.size() % characters.size()];
    ending += characters[sum % characters.size()];
    return ending;
}

}  // namespace

bool isTemporaryEnding(std::string_view ending)
{
    return ending.size() == endingLength && ending.find_first_not_of(characters) == std::string_view::npos &&
           isMixed(ending) && ending == withChecksum(ending.substr(0, drawnLength));
}

std::string drawTemporaryEnding()
{
    std::random_device source;
    std::uniform_int_distribution<std::size_t> position(0, characters.size() - 1);
    for (;;) {
        std::string drawn(drawnLength, ' ');
        std::generate(drawn.begin(), drawn.end(), [&] { return characters[position(source)]; });
        if (std::string ending = withChecksum(drawn); isMixed(ending)) {
            return ending;
        }
    }
}

}  // namespace TrellanSimulation
