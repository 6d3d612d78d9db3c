#include "support/TextFile.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

std::string readText(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + file.string());
    }
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void writeText(const std::filesystem::path& file, const std::string& text)
{
    std::ofstream stream(file, std::ios::binary);
    stream << text << std::flush;
    if (!stream) {
        throw std::runtime_error("cannot write " + file.string());
    }
}
