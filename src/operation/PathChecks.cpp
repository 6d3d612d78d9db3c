#include "operation/PathChecks.h"

#include <algorithm>

bool leavesFolder(std::string_view path)
{
    int depth = 0;
    while (!path.empty()) {
        const std::size_t length = std::min(path.find('/'), path.size());
        const std::string_view component = path.substr(0, length);
        path.remove_prefix(std::min(length + 1, path.size()));
        if (component == "..") {
            --depth;
        } else if (!component.empty() && component != ".") {
            ++depth;
        }
        if (depth < 0) {
            return true;
        }
    }
    return false;
}

bool isLiteralForShell(std::string_view path)
{
    constexpr std::string_view special = "!\"#$&'()*;<>?[\\]^`{|}~";
    return std::none_of(path.begin(), path.end(), [&](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return byte <= ' ' || byte == 0x7F || special.find(character) != std::string_view::npos;
    });
}
